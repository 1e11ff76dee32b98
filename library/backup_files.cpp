#include "backup_files.h"

#include <QFile>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "library/track_import.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/file_copy.h"
#include "shell/ui_port.h"
#include "tags/mpeg_info.h"

namespace sonorit {

namespace {

QString systemText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

bool onTwoSecondStep(const FileTime& t) { return t.nanoseconds == 0 && t.seconds % 2 == 0; }

qint64 twoSecondStep(qint64 seconds) { return seconds >= 0 ? seconds / 2 : (seconds - 1) / 2; }

bool isMp3Name(const QString& name)
{
    return name.endsWith(QLatin1String(".mp3"), Qt::CaseInsensitive) && name.size() > 4;
}

bool lessIgnoringCase(const QString& a, const QString& b) { return QString::compare(a, b, Qt::CaseInsensitive) < 0; }

void walk(const QString& folder, VisitedFolders& visited,
          const std::function<void(const QString&, const QStringList&)>& visit)
{
    if (!visited.enter(folder))
        return;
    const QByteArray encoded = QFile::encodeName(folder);
    DIR* dir = ::opendir(encoded.constData());
    if (!dir)
        return;
    QStringList subs, mp3s;
    bool partials = false;
    while (const dirent* e = ::readdir(dir)) {
        if (e->d_name[0] == '.') {
            partials = partials || Is_Partial_File_Name(QString::fromUtf8(e->d_name));
            continue;
        }
        const QString name = QString::fromUtf8(e->d_name);
        if (name.contains(QChar::ReplacementCharacter))
            continue;  // no path of ours leads back to it
        unsigned char type = e->d_type;
        if (type == DT_UNKNOWN || type == DT_LNK) {
            // A link counts as the file it leads to; a linked folder is not
            // entered, so that a clean-up never reaches beyond the tree.
            struct stat st {};
            const QByteArray path = encoded + '/' + e->d_name;
            if (::lstat(path.constData(), &st) != 0)
                continue;
            if (S_ISLNK(st.st_mode))
                type = ::stat(path.constData(), &st) == 0 && S_ISREG(st.st_mode) ? DT_REG : DT_LNK;
            else
                type = S_ISDIR(st.st_mode) ? DT_DIR : S_ISREG(st.st_mode) ? DT_REG : DT_UNKNOWN;
        }
        if (type == DT_DIR)
            subs << name;
        else if (type == DT_REG && isMp3Name(name))
            mp3s << name;
    }
    ::closedir(dir);
    if (partials)
        Remove_Partial_Files(folder);
    std::sort(subs.begin(), subs.end(), lessIgnoringCase);
    const QString prefix = folder == QLatin1String("/") ? folder : folder + QLatin1Char('/');
    for (const QString& sub : subs)
        walk(prefix + sub, visited, visit);
    if (!mp3s.isEmpty()) {
        std::sort(mp3s.begin(), mp3s.end(), lessIgnoringCase);
        visit(folder, mp3s);
    }
}

QString canonicalOrClean(const QString& folder)
{
    const QFileInfo info(folder);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

bool holds(const QString& outer, const QString& inner)
{
    return inner == outer || outer == QLatin1String("/")
           || inner.startsWith(outer + QLatin1Char('/'));
}

}  // namespace

FileTime File_Time(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {true, qint64(st.st_mtim.tv_sec), qint64(st.st_mtim.tv_nsec)};
}

bool Is_Later(const FileTime& a, const FileTime& b)
{
    if (onTwoSecondStep(a) || onTwoSecondStep(b))
        return twoSecondStep(a.seconds) > twoSecondStep(b.seconds);
    return a.seconds > b.seconds;
}

CopyResult Copy_Keeping_Time(const QString& source, const QString& target)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return {false, in.errorString()};
    struct stat st {};
    if (::fstat(in.handle(), &st) != 0)
        return {false, systemText(errno)};
    if (!S_ISREG(st.st_mode))
        return {false, systemText(EISDIR)};
    DurableFile out(target);
    out.keepPermissionsOf(source);
    if (!out.open())
        return {false, out.failure()};
    if (!copyBlocks(in, out, qint64(st.st_size))) {
        const QString reason = !out.failure().isEmpty() ? out.failure()
                               : in.error() != QFileDevice::NoError
                                   ? in.errorString()
                                   : QStringLiteral("the file became shorter while it was copied");
        out.cancelWriting();
        return {false, reason};
    }
    if (!out.commit())
        return {false, out.failure()};
    // The date decides what is newer next time; a medium that cannot keep it
    // leaves the copy with the time of the copy, which is later than its
    // source and so never copied again for nothing.
    // Both times are given: a FUSE medium may take no "leave it" for either.
    const struct timespec times[2] = {st.st_atim, st.st_mtim};
    ::utimensat(AT_FDCWD, QFile::encodeName(target).constData(), times, 0);
    return {true, QString()};
}

void Walk_Mp3_Folders(const QString& root, const QString& skip,
                      const std::function<void(const QString& folder, const QStringList& names)>& visit)
{
    VisitedFolders visited;
    if (!skip.isEmpty())
        visited.enter(skip);
    walk(Without_Slash(root), visited, visit);
}

bool Refuse_Overlapping_Backup(LibraryContext& c, const QString& backupFolder)
{
    const QString backup = canonicalOrClean(backupFolder);
    const QString library = canonicalOrClean(c.app.Library_Main_Folder);
    if (!holds(backup, library) && !holds(library, backup))
        return false;
    c.ui.message(QStringLiteral("The Backup folder can not be the Library folder, lie inside it or hold it:")
                     + QStringLiteral("\n\r") + backupFolder,
                 QStringLiteral("Backup folder refused"), Buttons::Ok, Icon::Warning);
    return true;
}

QString Without_Slash(const QString& folder)
{
    if (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        return folder.chopped(1);
    return folder;
}

QStringList Collect_Mp3_Tracks(UiPort& ui, const QString& folder, const QStringList& names)
{
    QStringList tracks;
    ui.setLabel17(QStringLiteral("Reading Folder: ") + folder);
    ui.setProgressRange(0, int(names.size()) - 1);
    for (int i = 0; i < names.size(); ++i) {
        ui.setProgressValue(i);
        ui.setLabel18(QStringLiteral("Collecting track ") + QString::number(i + 1) + QStringLiteral(" from ")
                      + QString::number(names.size()) + QStringLiteral(": ") + names[i]);
        ui.yield();
        if (Is_Mpeg(folder + QLatin1Char('/') + names[i]))
            tracks << names[i];
    }
    return tracks;
}

}  // namespace sonorit
