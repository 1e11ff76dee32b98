#include "temp_env.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/stat.h>

namespace sonorit::test {

namespace {
const char* const kVariables[4] = {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"};
}

TempEnv::TempEnv()
{
    const QString values[4] = {root(), path(".local/share"), path(".config"), path("run")};
    QDir().mkpath(values[3]);
    QFile::setPermissions(values[3], QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    for (int i = 0; i < 4; ++i) {
        if (!qEnvironmentVariableIsEmpty(kVariables[i]))
            saved_[i] = qgetenv(kVariables[i]);
        qputenv(kVariables[i], values[i].toUtf8());
    }
}

TempEnv::~TempEnv()
{
    for (int i = 0; i < 4; ++i) {
        if (saved_[i].isNull())
            qunsetenv(kVariables[i]);
        else
            qputenv(kVariables[i], saved_[i]);
    }
}

AppPaths TempEnv::paths() const
{
    AppPaths p = AppPaths::fromEnvironment(path("bin"));
    QDir().mkpath(p.Data_Folder);
    QDir().mkpath(p.Music_Folder);
    return p;
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
}

QStringList filesUnder(const QString& folder, const QStringList& nameFilters)
{
    QStringList out;
    QDirIterator it(folder, nameFilters, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(folder).relativeFilePath(it.next());
    out.sort();
    return out;
}

qint64 mtimeNs(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return -1;
    return qint64(st.st_mtim.tv_sec) * kSecondNs + st.st_mtim.tv_nsec;
}

void setMtime(const QString& path, qint64 ns)
{
    const struct timespec t[2] = {{time_t(ns / kSecondNs), 0}, {time_t(ns / kSecondNs), long(ns % kSecondNs)}};
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), t, 0);
}

FileState stateOf(const QString& path) { return {readFile(path), mtimeNs(path)}; }

QMap<QString, FileState> filesBelow(const QString& folder)
{
    QMap<QString, FileState> out;
    for (const QString& rel : filesUnder(folder))
        if (rel != QLatin1String(".filler"))
            out[rel] = stateOf(folder + QLatin1Char('/') + rel);
    return out;
}

}  // namespace sonorit::test
