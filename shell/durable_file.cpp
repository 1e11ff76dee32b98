#include "durable_file.h"

#include <QDir>
#include <QFile>
#include <QElapsedTimer>
#include <QFileInfo>
#include <set>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sonorit {

namespace {
constexpr qint64 kBufferSize = 1 << 16;
constexpr qint64 kBatchSyncMs = 200;

struct Batch {
    int depth = 0;
    QElapsedTimer sinceSync;
    std::set<QString> pending;  // files written and not yet synced
};

Batch& batch()
{
    static Batch b;
    return b;
}

// Whether the sync asked for now may wait: inside a batch whose last sync
// was recent.
bool deferNow()
{
    Batch& b = batch();
    const bool defer = b.depth > 0 && b.sinceSync.isValid() && b.sinceSync.elapsed() < kBatchSyncMs;
    if (b.depth > 0 && !defer)
        b.sinceSync.restart();
    return defer;
}
const QString kMark = QStringLiteral(".sonorit-partial-");

QString systemText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

mode_t defaultMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}
}  // namespace

DurableFile::DurableFile(QString target) : target_(std::move(target)) {}

DurableFile::~DurableFile() { cancelWriting(); }

bool DurableFile::fail(int error)
{
    if (failure_.isEmpty())
        failure_ = systemText(error);
    return false;
}

bool DurableFile::open(OpenMode mode)
{
    if (isOpen() || mode != WriteOnly)
        return false;
    const QFileInfo info(target_);
    // Hidden, so that no folder walk of the program takes it for a track.
    temp_ = QFile::encodeName(info.absolutePath() + QLatin1String("/.") + info.fileName() + kMark
                              + QStringLiteral("XXXXXX"));
    fd_ = ::mkostemp(temp_.data(), O_CLOEXEC);
    if (fd_ < 0)
        return fail(errno);
    // Held while the file is written, so a clean-up never takes a live one.
    ::flock(fd_, LOCK_EX | LOCK_NB);
    failure_.clear();
    buffer_.clear();
    return QIODevice::open(mode | Unbuffered);
}

qint64 DurableFile::writeData(const char* data, qint64 size)
{
    if (fd_ < 0 || !failure_.isEmpty())
        return -1;
    if (buffer_.size() + size > kBufferSize && !flushBuffer())
        return -1;
    if (size >= kBufferSize) {
        buffer_ = QByteArray(data, int(size));
        return flushBuffer() ? size : -1;
    }
    buffer_.append(data, int(size));
    return size;
}

bool DurableFile::flushBuffer()
{
    const char* p = buffer_.constData();
    qint64 left = buffer_.size();
    while (left > 0) {
        const ssize_t n = ::write(fd_, p, size_t(left));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return fail(n < 0 ? errno : ENOSPC);
        p += n;
        left -= n;
    }
    buffer_.clear();
    return true;
}

bool DurableFile::commit()
{
    if (fd_ < 0)
        return false;
    bool ok = failure_.isEmpty() && flushBuffer();
    const bool deferred = mayDefer_ && deferNow();
    if (ok) {
        if (keepModeAndTimes_) {
            ::fchmod(fd_, keptMode_);
            // Both times are given: a FUSE medium may take no "leave it".
            ::futimens(fd_, keptTimes_);
        } else {
            struct stat st {};
            const QByteArray like = QFile::encodeName(permissionsOf_.isEmpty() ? target_ : permissionsOf_);
            const mode_t mode = ::stat(like.constData(), &st) == 0 ? (st.st_mode & 07777) : defaultMode();
            ::fchmod(fd_, mode);
        }
        ok = deferred || Sync_Written(fd_) || fail(errno);
    }
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0 && ok)
        ok = fail(errno);
    if (ok) {
        const QByteArray to = QFile::encodeName(target_);
        ok = ::rename(temp_.constData(), to.constData()) == 0 || fail(errno);
    }
    QIODevice::close();
    if (!ok) {
        ::unlink(temp_.constData());
        return false;
    }
    if (deferred)
        batch().pending.insert(target_);
    else
        Sync_Folder_Of(target_);
    temp_.clear();
    return true;
}

void DurableFile::cancelWriting()
{
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
        ::unlink(temp_.constData());
        temp_.clear();
    }
    if (isOpen())
        QIODevice::close();
}

bool Write_File_Durably(const QString& path, const QByteArray& bytes, QString* failure)
{
    DurableFile f(path);
    const bool ok = f.open() && f.write(bytes) == bytes.size() && f.commit();
    if (!ok && failure)
        *failure = f.failure();
    return ok;
}

bool Sync_Written_Or_Defer(int fd, const QString& path)
{
    if (deferNow()) {
        batch().pending.insert(path);
        return true;
    }
    return Sync_Written(fd);
}

SyncBatch::SyncBatch() { Begin_Sync_Batch(); }
SyncBatch::~SyncBatch() { End_Sync_Batch(); }

void Begin_Sync_Batch()
{
    Batch& b = batch();
    if (b.depth++ == 0)
        b.sinceSync.invalidate();  // the first write of a batch syncs
}

void End_Sync_Batch()
{
    Batch& b = batch();
    if (b.depth == 0 || --b.depth > 0)
        return;
    // One sync of each file system written to puts every pending file and
    // name on the disk at once, where a sync per file would cost a journal
    // commit each.
    std::set<QString> folders;
    for (const QString& path : b.pending)
        folders.insert(QFileInfo(path).absolutePath());
    std::set<dev_t> synced;
    for (const QString& folder : folders) {
        const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        struct stat st {};
        if (fd >= 0 && ::fstat(fd, &st) == 0 && synced.insert(st.st_dev).second)
            ::syncfs(fd);
        if (fd >= 0)
            ::close(fd);
    }
    b.pending.clear();
}

bool Sync_Written(int fd)
{
    // A regular file's data; the size change is part of it.
    return ::fdatasync(fd) == 0;
}

void Sync_Folder_Of(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

bool Is_Partial_File_Name(const QString& name)
{
    return name.startsWith(QLatin1Char('.')) && name.contains(kMark);
}

void Remove_Partial_Files(const QString& folder)
{
    const QDir dir(folder);
    const QStringList names =
        dir.entryList({QStringLiteral(".*") + kMark + QStringLiteral("*")}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        if (!Is_Partial_File_Name(name))
            continue;
        const QByteArray path = QFile::encodeName(dir.filePath(name));
        const int fd = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
        if (fd < 0)
            continue;
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0)  // nobody writes it any more
            ::unlink(path.constData());
        ::close(fd);
    }
}

}  // namespace sonorit
