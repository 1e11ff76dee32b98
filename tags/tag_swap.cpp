#include "tag_swap.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QThread>

#include "shell/durable_file.h"
#include "shell/file_copy.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {
constexpr int kTries = 5;  // a busy file gets this many attempts

// The new file must be on the disk before its name replaces the old one,
// or a crash right after the swap could leave neither.
bool Sync_To_Disk(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) && Sync_Written(f.handle());
}

// Puts `temp` in the place of `path`. Within one filesystem a rename replaces
// the old file in one step; across filesystems the copy lands beside the old
// file first and is renamed there. The old file is never deleted beforehand.
bool Swap_In(const QString& temp, const QString& path, UiPort& ui)
{
    // A link stays a link: the file it points to gets the new content.
    const QFileInfo old(path);
    const QString dest = old.isSymLink() && old.exists() ? old.canonicalFilePath() : path;
    if (QFileInfo::exists(dest))
        QFile::setPermissions(temp, QFile::permissions(dest));
    if (!Sync_To_Disk(temp))
        return false;
    const QByteArray from = QFile::encodeName(temp), to = QFile::encodeName(dest);
    int error = 0;
    for (int i = 0; i < kTries; ++i) {
        if (std::rename(from.constData(), to.constData()) == 0) {
            Sync_Folder_Of(dest);
            return true;
        }
        error = errno;
        if (error == EXDEV)
            break;
        ui.yield();
    }
    // Across file systems the copy is on the disk before the temporary goes.
    return error == EXDEV && moveFile(temp, dest);
}
// One tag write at a time per data folder: every program writes through the
// same "Temp.mp3", and a second writer there would hand the first one its
// file. The (hidden) lock beside it is held from the first byte to the swap.
class TempLock {
public:
    explicit TempLock(const QString& dataFolder)
        : fd_(::open(QFile::encodeName(dataFolder + QStringLiteral(".Temp.mp3.lock")).constData(),
                     O_RDWR | O_CREAT | O_CLOEXEC, 0666))
    {
        // A writer of a large file holds it for seconds; one that holds it
        // for a minute is taken for stuck.
        for (int waited = 0; fd_ >= 0 && ::flock(fd_, LOCK_EX | LOCK_NB) != 0; waited += 20) {
            if (errno != EWOULDBLOCK || waited >= 60000) {
                ::close(fd_);
                fd_ = -2;
                return;
            }
            QThread::msleep(20);
        }
    }
    ~TempLock()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    TempLock(const TempLock&) = delete;
    TempLock& operator=(const TempLock&) = delete;
    // False only when another program kept it; a folder that cannot hold the
    // lock file cannot hold "Temp.mp3" either, and the write reports that.
    bool held() const { return fd_ != -2; }

private:
    int fd_;
};
}  // namespace

QString Tag2_Update_Failed_Text()
{
    return QStringLiteral("An error occured whilst trying updating Tag3v2, changes are discarded");
}

QString Tag2_Update_Failed_Title() { return QStringLiteral("Tag update error"); }

bool Write_Through_Temp(const QString& dataFolder, const QString& path, UiPort& ui, const Tag2FileWriter& writer,
                        const std::function<void()>& reread, const QString& failureText)
{
    const QString temp = dataFolder + QStringLiteral("Temp.mp3");
    const TempLock lock(dataFolder);
    bool done = false;
    try {
        if (!lock.held())
            throw 0;
        deleteUntilGone(temp, &ui, kTries);
        if (writer(path, temp))
            done = !QFileInfo::exists(temp) || Swap_In(temp, path, ui);
    } catch (...) {
        done = false;
    }
    if (done)
        return true;
    try {
        if (!failureText.isEmpty())
            ui.message(failureText, Tag2_Update_Failed_Title(), Buttons::Ok, Icon::None);
        if (lock.held())
            deleteUntilGone(temp, &ui, kTries);
        if (reread)
            reread();
    } catch (...) {
    }
    return false;
}

}  // namespace sonorit
