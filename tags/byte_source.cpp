#include "byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <cstring>

#include <algorithm>
#include <cstring>

namespace sonorit {

int ByteSource::byteAt(qint64 offset)
{
    char c;
    return readAt(offset, &c, 1) == 1 ? static_cast<unsigned char>(c) : -1;
}

QByteArray ByteSource::bytesAt(qint64 offset, qint64 n)
{
    if (offset < 0 || n <= 0 || offset >= size())
        return {};
    n = std::min(n, size() - offset);
    QByteArray out(n, Qt::Uninitialized);
    out.truncate(readAt(offset, out.data(), n));
    return out;
}

qint64 MemorySource::readAt(qint64 offset, char* dst, qint64 n)
{
    if (offset < 0 || n <= 0 || offset >= data_.size())
        return 0;
    n = std::min(n, data_.size() - offset);
    std::memcpy(dst, data_.constData() + offset, n);
    return n;
}

FileSource::FileSource(const QString& path)
{
    // Not blocking: opening a pipe for reading would wait for a writer.
    fd_ = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat st;
    if (fd_ >= 0 && ::fstat(fd_, &st) == 0 && S_ISREG(st.st_mode)) {
        size_ = st.st_size;
        return;
    }
    error_ = fd_ < 0 ? QString::fromLocal8Bit(std::strerror(errno)) : QStringLiteral("Not a regular file");
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

FileSource::~FileSource()
{
    if (fd_ >= 0)
        ::close(fd_);
}

// One positioned read: no seek, and no buffer of QFile in between.
qint64 FileSource::readFile(qint64 offset, char* dst, qint64 n)
{
    qint64 done = 0;
    while (done < n) {
        const ssize_t got = ::pread(fd_, dst + done, static_cast<size_t>(n - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got < 0 && done == 0 ? -1 : done;
        done += got;
    }
    return done;
}

bool FileSource::fill(qint64 blockStart)
{
    if (blockStart == cacheStart_)
        return true;
    cache_.resize(kBlock);
    const qint64 got = readFile(blockStart, cache_.data(), kBlock);
    if (got < 0) {
        cacheStart_ = -1;
        return false;
    }
    cache_.truncate(got);
    cacheStart_ = blockStart;
    return true;
}

qint64 FileSource::readAt(qint64 offset, char* dst, qint64 n)
{
    if (fd_ < 0 || offset < 0 || n <= 0 || offset >= size_)
        return 0;
    n = std::min(n, size_ - offset);
    // Large reads (picture data) go straight to the file; they would only
    // push the header bytes out of the cache.
    if (n > kBlock) {
        const qint64 got = readFile(offset, dst, n);
        return got < 0 ? 0 : got;
    }
    qint64 done = 0;
    while (done < n) {
        const qint64 at = offset + done;
        if (!fill(at - at % kBlock))
            break;
        const qint64 inBlock = at - cacheStart_;
        if (inBlock >= cache_.size())
            break;
        const qint64 take = std::min(n - done, cache_.size() - inBlock);
        std::memcpy(dst + done, cache_.constData() + inBlock, take);
        done += take;
    }
    return done;
}

}  // namespace sonorit
