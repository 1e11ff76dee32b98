#include "file_copy.h"

#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>

#include "durable_file.h"
#include "ui_port.h"

#include <cerrno>
#include <cstdio>

namespace sonorit {

bool copyBlocks(QIODevice& in, QIODevice& out, qint64 count)
{
    char buffer[4096];
    qint64 block = 4096;
    while (count > 0) {
        while (block > count)
            block /= 2;
        if (in.read(buffer, block) != block)
            return false;
        if (out.write(buffer, block) != block)
            return false;
        count -= block;
    }
    return true;
}

namespace {
bool copyFile(const QString& source, const QString& target, bool mayDeferSync)
{
    QFile in(source);
    struct stat st {};
    if (!in.open(QIODevice::ReadOnly) || ::fstat(in.handle(), &st) != 0)
        return false;
    DurableFile out(target);
    // The copy gets the source's time before it appears under its name, so
    // that it is never seen newer than its source.
    out.keepModeAndTimesOf(st);
    out.setMayDeferSync(mayDeferSync);
    if (!out.open())
        return false;
    if (!copyBlocks(in, out, in.size())) {
        out.cancelWriting();
        return false;
    }
    return out.commit();
}

}  // namespace

bool copyFileKeepingTime(const QString& source, const QString& target)
{
    return copyFile(source, target, true);
}

bool moveFile(const QString& source, const QString& target)
{
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    if (::rename(from.constData(), to.constData()) == 0)
        return true;
    if (errno != EXDEV)
        return false;
    // The copy must be on the disk before the source goes.
    if (!copyFile(source, target, false))
        return false;
    if (!QFile::remove(source)) {
        QFile::remove(target);  // the source stays the one copy
        return false;
    }
    return true;
}

bool deleteUntilGone(const QString& path, UiPort* ui, int attempts)
{
    for (int i = 0; attempts == 0 || i < attempts; ++i) {
        if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink())
            return true;
        if (QFile::remove(path))
            return true;
        if (ui)
            ui->yield();
    }
    return !QFileInfo::exists(path);
}

}  // namespace sonorit
