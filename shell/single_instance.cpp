#include "single_instance.h"

#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

namespace sonorit {

SingleInstance::SingleInstance() = default;
SingleInstance::~SingleInstance() = default;

QString SingleInstance::lockPath()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (dir.isEmpty())
        dir = QDir::tempPath();
    return dir + QStringLiteral("/ZEV_MP3_Sonorit.lock");
}

bool SingleInstance::acquire()
{
    lock_ = std::make_unique<QLockFile>(lockPath());
    lock_->setStaleLockTime(0);
    return lock_->tryLock(0);
}

}  // namespace sonorit
