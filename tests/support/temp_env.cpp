#include "temp_env.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <cstdlib>

namespace sonorit::test {

namespace {
void setEnv(const char* name, const QString& value) { qputenv(name, value.toUtf8()); }
void restore(const char* name, const QByteArray& value)
{
    if (value.isNull())
        qunsetenv(name);
    else
        qputenv(name, value);
}
}  // namespace

TempEnv::TempEnv()
    : oldHome_(qgetenv("HOME")), oldData_(qgetenv("XDG_DATA_HOME")), oldConfig_(qgetenv("XDG_CONFIG_HOME")),
      oldRuntime_(qgetenv("XDG_RUNTIME_DIR"))
{
    if (qEnvironmentVariableIsEmpty("XDG_DATA_HOME"))
        oldData_ = QByteArray();
    if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME"))
        oldConfig_ = QByteArray();
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        oldRuntime_ = QByteArray();
    setEnv("HOME", root());
    setEnv("XDG_DATA_HOME", path(QStringLiteral(".local/share")));
    setEnv("XDG_CONFIG_HOME", path(QStringLiteral(".config")));
    QDir().mkpath(path(QStringLiteral("run")));
    QFile::setPermissions(path(QStringLiteral("run")), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    setEnv("XDG_RUNTIME_DIR", path(QStringLiteral("run")));
}

TempEnv::~TempEnv()
{
    restore("HOME", oldHome_);
    restore("XDG_DATA_HOME", oldData_);
    restore("XDG_CONFIG_HOME", oldConfig_);
    restore("XDG_RUNTIME_DIR", oldRuntime_);
}

AppPaths TempEnv::paths() const
{
    AppPaths p = AppPaths::fromEnvironment(path(QStringLiteral("bin")));
    QDir().mkpath(p.Data_Folder);
    QDir().mkpath(p.Music_Folder);
    return p;
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
}

}  // namespace sonorit::test
