#pragma once
// INI files with the behaviour of the Windows profile-string calls, used for
// the library file and the per-user settings: sections and keys match without
// regard to case, the first match wins, blanks around a value are dropped,
// nothing is unquoted. A write replaces the first matching key in place or
// appends it to its section; a missing section is appended, a missing file
// created. The file is replaced only once its successor is complete.
#include <QList>
#include <QPair>
#include <QString>

namespace sonorit {

class IniFile {
public:
    explicit IniFile(QString path, int valueLimit = 999) : path_(std::move(path)), limit_(valueLimit) {}

    const QString& path() const { return path_; }
    QString read(const QString& section, const QString& key, const QString& defaultValue) const;
    bool write(const QString& section, const QString& key, const QString& value) const;
    // Several keys of one section in a single rewrite of the file.
    bool write(const QString& section, const QList<QPair<QString, QString>>& entries) const;

private:
    QString path_;
    int limit_;
};

// The program's names for the same two calls.
QString GetPrivateProfileString(const QString& section, const QString& key, const QString& defaultValue,
                                const QString& file);
bool WritePrivateProfileString(const QString& section, const QString& key, const QString& value,
                               const QString& file);

}  // namespace sonorit
