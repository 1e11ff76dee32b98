#include "file_stamp.h"

#include <QFile>
#include <sys/stat.h>
#include <ctime>

namespace sonorit {

FileStamp Read_File_Stamp(const QString& path)
{
    FileStamp s;
    struct stat st;
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &st) != 0)
        return s;
    s.exists = true;
    // strftime instead of QDateTime: a refresh formats one stamp per new file
    // and this is several times cheaper.
    struct tm local;
    char text[32];
    const time_t t = st.st_mtime;
    if (localtime_r(&t, &local) && strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local) > 0)
        s.changed = QString::fromLatin1(text);
    s.length = QString::number(static_cast<qint64>(st.st_size));
    return s;
}

}  // namespace sonorit
