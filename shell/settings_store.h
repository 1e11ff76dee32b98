#pragma once
// The per-user settings store of application "ZEVSonorit": sections of keys
// with text values, one INI file, written at once on every change.
#include <QString>

#include "ini_file.h"

namespace sonorit {

class SettingsStore {
public:
    explicit SettingsStore(const QString& file) : ini_(file, 1 << 30) {}

    QString GetSetting(const QString& section, const QString& key, const QString& defaultValue) const;
    void SaveSetting(const QString& section, const QString& key, const QString& value) const;
    const QString& path() const { return ini_.path(); }

private:
    IniFile ini_;
};

}  // namespace sonorit
