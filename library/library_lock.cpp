#include "library_lock.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>
#include <utility>

#include "library/open_library.h"
#include "shell/app_state.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

LibraryState::Seen stampOf(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {true, quint64(st.st_ino), qint64(st.st_size), qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec};
}

bool sameStamp(const LibraryState::Seen& a, const LibraryState::Seen& b)
{
    return a.valid == b.valid && a.inode == b.inode && a.size == b.size && a.mtime == b.mtime;
}

// The lock files this process holds, by device and inode. A lock of another
// descriptor of the same file would wait for this process itself, so an
// inner acquire (opening the library during a change) shares the outer one.
std::set<std::pair<dev_t, ino_t>>& heldLocks()
{
    static std::set<std::pair<dev_t, ino_t>> held;
    return held;
}

}  // namespace

QString Library_In_Use_Text() { return QStringLiteral("The library is in use by another program."); }

bool LibraryLock::acquire(const QString& trackfile, int waitMs)
{
    release();
    const QByteArray path = QFile::encodeName(trackfile + QStringLiteral(".lock"));
    fd_ = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (fd_ < 0)
        return true;  // a data folder that cannot hold the lock file cannot hold a change either
    struct stat st {};
    if (::fstat(fd_, &st) != 0)
        return true;
    const std::pair<dev_t, ino_t> id{st.st_dev, st.st_ino};
    if (heldLocks().count(id) != 0) {
        ::close(fd_);
        fd_ = -1;
        return true;
    }
    QElapsedTimer waited;
    waited.start();
    while (::flock(fd_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK || waited.elapsed() >= waitMs) {
            release();
            return false;
        }
        QThread::msleep(20);
    }
    heldLocks().insert(id);
    held_ = id;
    holds_ = true;
    return true;
}

void LibraryLock::release()
{
    if (holds_) {
        heldLocks().erase(held_);
        holds_ = false;
    }
    if (fd_ >= 0) {
        ::close(fd_);  // ends the lock
        fd_ = -1;
    }
}

void Note_Library_Seen(LibraryContext& c) { c.lib.seen = stampOf(c.app.Trackfile); }

bool With_Library_Lock(LibraryContext& c, const std::function<void()>& change)
{
    if (c.app.Library_File.isEmpty() || c.app.Trackfile.isEmpty()) {
        change();
        return true;
    }
    LibraryLock lock;
    if (!lock.acquire(c.app.Trackfile)) {
        c.ui.message(Library_In_Use_Text(), QStringLiteral("Library in use"), Buttons::Ok, Icon::Warning);
        return false;
    }
    if (c.lib.seen.valid && !sameStamp(c.lib.seen, stampOf(c.app.Trackfile))) {
        const QString path = c.app.Library_File;  // a copy: opening clears the old one first
        if (!Open_Library(c, path, OpenVia::Path))
            return false;
    }
    change();
    Note_Library_Seen(c);
    return true;
}

}  // namespace sonorit
