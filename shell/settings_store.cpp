#include "settings_store.h"

#include <QDir>
#include <QFileInfo>

namespace sonorit {

QString SettingsStore::GetSetting(const QString& section, const QString& key, const QString& defaultValue) const
{
    return ini_.read(section, key, defaultValue);
}

void SettingsStore::SaveSetting(const QString& section, const QString& key, const QString& value) const
{
    // A failed write is silently lost, as the store promises nothing more.
    QDir().mkpath(QFileInfo(ini_.path()).absolutePath());
    ini_.write(section, key, value);
}

}  // namespace sonorit
