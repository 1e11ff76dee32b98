#pragma once
// A FAT file system in an image file, mounted through FUSE for one test, as a
// USB stick would be: names keep their case but match without regard to it.
// `reason` says why not where the tools or /dev/fuse are missing.
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QString>

namespace sonorit::test {

class FatMount {
public:
    FatMount(const QString& image, const QString& folder) : at_(folder)
    {
        const QString mkfs = QStandardPaths::findExecutable("mkfs.vfat", {"/usr/sbin", "/sbin", "/usr/bin"});
        const QString fuse = QStandardPaths::findExecutable("fusefat");
        if (mkfs.isEmpty() || fuse.isEmpty() || !QFile::exists("/dev/fuse")) {
            reason_ = "mkfs.vfat, fusefat or /dev/fuse is missing";
            return;
        }
        QDir().mkpath(folder);
        if (QProcess::execute(mkfs, {"-C", image, "8192"}) != 0
            || QProcess::execute(fuse, {"-o", "rw+", image, folder}) != 0) {
            reason_ = "a FAT image could not be made or mounted here";
            return;
        }
        mounted_ = true;
    }
    ~FatMount()
    {
        if (mounted_)
            QProcess::execute("fusermount", {"-u", "-z", at_});
    }
    bool mounted() const { return mounted_; }
    const QString& reason() const { return reason_; }

private:
    QString at_;
    bool mounted_ = false;
    QString reason_;
};

}  // namespace sonorit::test
