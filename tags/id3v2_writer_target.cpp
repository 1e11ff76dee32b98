#include "id3v2_writer_target.h"

#include "mpeg_info.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>

namespace sonorit {

bool Copy_Source_Range(ByteSource& source, qint64 position, qint64 count, QIODevice& out)
{
    char buffer[4096];
    qint64 block = sizeof buffer;
    qint64 offset = position - 1;
    if (offset < 0 || count < 0)
        return false;
    while (count > 0) {
        while (block > count)
            block /= 2;
        if (!source.readExact(offset, buffer, block) || out.write(buffer, block) != block)
            return false;
        offset += block;
        count -= block;
    }
    return true;
}

bool Build_New_File(const QString& target, const std::function<bool(QIODevice&)>& build)
{
    if (QFileInfo::exists(target) && !QFile::remove(target))
        return false;
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    bool ok = false;
    try {
        ok = build(file);
    } catch (...) {
        ok = false;
    }
    // Buffered bytes reach the disk only here; a full disk shows up now.
    ok = file.flush() && ok;
    file.close();
    ok = ok && file.error() == QFileDevice::NoError;
    if (!ok)
        QFile::remove(target);
    return ok;
}

bool Build_From_Audio(const QString& source, const QString& target,
                      const std::function<bool(ByteSource&, QIODevice&)>& build)
{
    try {
        if (Same_File(source, target))
            return false;
        FileSource in(source);
        if (!in.isOpen() || !Is_Mpeg(in))
            return false;
        return Build_New_File(target, [&](QIODevice& out) { return build(in, out); });
    } catch (...) {
        return false;
    }
}

bool Is_Writable_File(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat st;
    return ::stat(name.constData(), &st) == 0 && (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH))
        && ::access(name.constData(), W_OK) == 0;
}

bool Same_File(const QString& a, const QString& b)
{
    const QFileInfo fa(a), fb(b);
    return fa.exists() && fb.exists() && fa.canonicalFilePath() == fb.canonicalFilePath();
}

}  // namespace sonorit
