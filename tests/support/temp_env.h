#pragma once
// A private HOME with its XDG folders for one test, so that settings, data
// folder and the music folder never touch the real user's files. Programs
// started meanwhile inherit them.
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <ostream>
#include <QTemporaryDir>

#include "shell/app_paths.h"

namespace sonorit::test {

class TempEnv {
public:
    TempEnv();
    ~TempEnv();
    QString root() const { return dir_.path(); }
    QString path(const QString& rel) const { return dir_.path() + QLatin1Char('/') + rel; }
    AppPaths paths() const;  // AppPaths for this environment, folders created

private:
    QTemporaryDir dir_;
    QByteArray saved_[4];  // null: was unset or empty
};

QByteArray readFile(const QString& path);
// Makes the missing folders on the way.
void writeFile(const QString& path, const QByteArray& bytes);
// Every file below `folder` (hidden ones too) matching `nameFilters`,
// relative to it, sorted.
QStringList filesUnder(const QString& folder, const QStringList& nameFilters = {});

inline constexpr qint64 kSecondNs = 1000000000;
inline constexpr qint64 kHourNs = 3600 * kSecondNs;
// A file's modification time in nanoseconds; -1 when it is missing.
qint64 mtimeNs(const QString& path);
void setMtime(const QString& path, qint64 ns);

// What the disk holds of one file.
struct FileState {
    QByteArray bytes;
    qint64 mtime = -1;
    bool operator==(const FileState& o) const { return bytes == o.bytes && mtime == o.mtime; }
};
inline void PrintTo(const FileState& s, std::ostream* os) { *os << s.bytes.size() << " bytes of " << s.mtime; }
FileState stateOf(const QString& path);
// Every file below `folder` (hidden ones too, a small file system's filler
// not), by its path relative to the folder.
QMap<QString, FileState> filesBelow(const QString& folder);

}  // namespace sonorit::test
