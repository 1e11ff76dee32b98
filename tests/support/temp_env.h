#pragma once
// A private HOME with its XDG folders for one test, so that settings, data
// folder and the music folder never touch the real user's files. Programs
// started meanwhile inherit them.
#include <QByteArray>
#include <QString>
#include <QStringList>
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

}  // namespace sonorit::test
