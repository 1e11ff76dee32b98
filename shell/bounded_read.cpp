#include "bounded_read.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sonorit {

ReadResult Read_Regular_File(const QString& path, qint64 maxBytes, QByteArray* bytes)
{
    bytes->clear();
    // Non-blocking, so that opening a FIFO returns at once.
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return errno == ENOENT ? ReadResult::Missing : ReadResult::Failed;
    struct stat st {};
    ReadResult result = ReadResult::Read;
    if (::fstat(fd, &st) != 0)
        result = ReadResult::Failed;
    else if (!S_ISREG(st.st_mode))
        result = ReadResult::NotRegular;
    else if (st.st_size > maxBytes)
        result = ReadResult::TooLarge;
    if (result == ReadResult::Read) {
        bytes->resize(qsizetype(st.st_size));
        qint64 got = 0;
        while (got < st.st_size) {
            const ssize_t n = ::read(fd, bytes->data() + got, size_t(st.st_size - got));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            got += n;
        }
        bytes->resize(qsizetype(got));  // a file that shrank meanwhile gives what was there
    }
    ::close(fd);
    return result;
}

}  // namespace sonorit
