#pragma once
// A small real file system for one test: a tmpfs mounted over a folder where
// the machine allows it (root or a user namespace), so that a full disk is a
// real ENOSPC. `reason` says why not when it could not be mounted.
#include <QDir>
#include <QFile>
#include <QString>
#include <cerrno>
#include <cstring>
#include <sys/mount.h>
#include <sys/statvfs.h>

namespace sonorit::test {

class SmallFileSystem {
public:
    SmallFileSystem(const QString& folder, int kib) : at_(folder)
    {
        QDir().mkpath(folder);
        const QByteArray options = "size=" + QByteArray::number(kib) + "k";
        if (::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, options.constData()) == 0)
            mounted_ = true;
        else
            reason_ = QStringLiteral("cannot mount a tmpfs here: ") + QString::fromLocal8Bit(std::strerror(errno));
    }
    ~SmallFileSystem()
    {
        if (mounted_)
            ::umount2(QFile::encodeName(at_).constData(), MNT_DETACH);
    }
    bool mounted() const { return mounted_; }
    const QString& reason() const { return reason_; }

    // Fills the file system with a hidden filler until about `bytes` are free.
    void leaveFree(qint64 bytes) const
    {
        struct statvfs s {};
        if (::statvfs(QFile::encodeName(at_).constData(), &s) != 0)
            return;
        const qint64 fill = qint64(s.f_bavail) * qint64(s.f_frsize) - bytes;
        QFile f(at_ + QStringLiteral("/.filler"));
        if (fill > 0 && f.open(QIODevice::Append))
            f.write(QByteArray(int(fill), '\0'));
    }

private:
    QString at_;
    bool mounted_ = false;
    QString reason_;
};

}  // namespace sonorit::test
