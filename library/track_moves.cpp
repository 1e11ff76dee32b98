#include "track_moves.h"

#include <QDir>
#include <algorithm>
#include <QFile>
#include <sys/stat.h>

#include "library/naming_builders.h"
#include "library/slots.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/file_copy.h"
#include "shell/file_stamp.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

const QString kLfCr = QStringLiteral("\n\r");

bool sameInode(const QString& a, const QString& b)
{
    struct stat sa, sb;
    return ::stat(QFile::encodeName(a).constData(), &sa) == 0 && ::stat(QFile::encodeName(b).constData(), &sb) == 0
           && sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

bool differOnlyInCase(const QString& a, const QString& b)
{
    return a != b && a.compare(b, Qt::CaseInsensitive) == 0;
}

bool renamePath(const QString& from, const QString& to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

// Whether the folder lists this exact name. A folder listing is read afresh,
// where a lookup by name may be answered from a cache that still knows the
// other spelling (as a FUSE mount does).
bool listedExactly(const QString& path)
{
    return QDir(Get_Path_Folder(path))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
        .contains(Get_Path_File(path));
}

enum class CaseChange { Done, TwoFiles, Failed };

// Two spellings that differ only in case name one file on a case-insensitive
// file system (a FAT or exFAT stick) and two files otherwise. Inode numbers
// cannot tell (such a mount gives each spelling its own): if the folder
// does not list the new spelling itself, both are one. The file or folder
// steps aside under a temporary name and takes the new spelling from there,
// since a direct rename may do nothing on such a file system. Nothing is
// deleted on the way.
CaseChange changeCase(const QString& from, const QString& to)
{
    if (listedExactly(to) && !sameInode(from, to))
        return CaseChange::TwoFiles;
    const QString aside = Get_Path_Folder(from) + QStringLiteral("/.") + Get_Path_File(from)
                          + QStringLiteral(".sonorit-case");
    if (listedExactly(aside) || !renamePath(from, aside))
        return CaseChange::Failed;
    if (renamePath(aside, to))
        return CaseChange::Done;
    renamePath(aside, from);
    return CaseChange::Failed;
}

// A folder whose spelling differs in case at any level: each differing level
// takes its new spelling, from the top down.
CaseChange changeFolderCase(const QString& from, const QString& to)
{
    const QStringList a = from.split(QLatin1Char('/')), b = to.split(QLatin1Char('/'));
    QString done;
    for (int i = 0; i < a.size(); ++i) {
        const QString prefix = i == 0 ? QString() : done + QLatin1Char('/');
        if (a[i] != b[i]) {
            const CaseChange step = changeCase(prefix + a[i], prefix + b[i]);
            if (step != CaseChange::Done)
                return step;
        }
        done = prefix + b[i];
    }
    return CaseChange::Done;
}

// A file that may be the track itself under another spelling is never
// deleted: only when the folders list both names are they two files.
bool maybeSameFile(const QString& a, const QString& b)
{
    if (sameInode(a, b))
        return true;
    return a.compare(b, Qt::CaseInsensitive) == 0 && !(listedExactly(a) && listedExactly(b));
}

bool confirmReplacement(LibraryContext& c, const QString& path)
{
    return c.ui.question(path + QStringLiteral(" exists.") + kLfCr + QStringLiteral("Do you want to replace this file?"),
                         QStringLiteral("Confirm replacement"), Buttons::YesNo, Icon::Question, Answer::No)
           == Answer::Yes;
}

// Tells which file stayed where it was. False, so that a failed move without
// a guard of its own stops the command that called.
bool moveFailure(LibraryContext& c, bool rename, const QString& path)
{
    if (rename) {
        c.ui.message(QStringLiteral("The following track couldn't be renamed:") + kLfCr + path,
                     QStringLiteral("Rename failure"), Buttons::Ok, Icon::Warning);
    } else {
        c.ui.message(QStringLiteral("The following track couldn't be relocated:") + kLfCr + path,
                     QStringLiteral("Relocate failure"), Buttons::Ok, Icon::Warning);
    }
    return false;
}

void stampRow(LibraryContext& c, int index, const QString& path)
{
    const FileStamp stamp = Read_File_Stamp(path);
    c.lib.MP3_List.setField(index, ColLastChanged, stamp.changed);
    c.lib.MP3_List.setField(index, ColFilelength, stamp.length);
}

void recordFailure(LibraryContext& c, const QString& what, const QString& oldPath)
{
    c.ui.message(what + kLfCr + oldPath + kLfCr + QStringLiteral("BUT, the tags could not be saved in the library-file.")
                     + kLfCr + QStringLiteral("Please select the menufunction Libray => Refresh as soon as possible."),
                 QStringLiteral("Library file update failure"), Buttons::Ok, Icon::Warning);
}

// Stores the row's record and points the playlist's first entry of the old
// path at the new one.
void storeRow(LibraryContext& c, int index, const QString& oldPath, const QString& newPath, const QString& what)
{
    const TrackRow& row = c.lib.MP3_List.row(index);
    if (c.lib.failAt("move-record")
               || !Replace_Track_Record(c, Track_ID_Of(row[ColID]), Join_Track_Record(row))) {
        recordFailure(c, what, oldPath);
    }
    if (c.lib.Playlist_Paths) {
        const int at = c.lib.Playlist_Paths->indexOf(oldPath);
        if (at >= 0)
            (*c.lib.Playlist_Paths)[at] = newPath;
    }
}

// Covers go with the first track of an album to move; then the old folder and
// its parents go while they hold no file. Only folders below the Main Folder
// are removed: a track taken in from elsewhere leaves that place as it was.
// Any failure ends this in silence.
void tidyUp(const QString& oldFolder, const QString& newFolder, const QString& mainFolder)
{
    // The cover names match without regard to case, as on the disks they
    // often come from; a cover keeps its spelling.
    const QStringList oldFiles = QDir(oldFolder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    const QStringList newFiles = QDir(newFolder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const char* cover : {"Folder.jpg", "AlbumArtSmall.jpg"}) {
        const auto named = [cover](const QString& f) { return f.compare(QLatin1String(cover), Qt::CaseInsensitive) == 0; };
        const auto from = std::find_if(oldFiles.begin(), oldFiles.end(), named);
        if (from != oldFiles.end() && std::none_of(newFiles.begin(), newFiles.end(), named))
            moveFile(Add_Backslash(oldFolder) + *from, Add_Backslash(newFolder) + *from);
    }
    QString folder = oldFolder;
    while (folder.size() + 1 > mainFolder.size() && Add_Backslash(folder).startsWith(mainFolder)
           && Add_Backslash(folder) != mainFolder) {
        QFile::remove(Add_Backslash(folder) + QStringLiteral("desktop.ini"));
        if (!QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System).isEmpty())
            return;
        if (!QDir().rmdir(folder))
            return;  // a subfolder is left, or the folder cannot go
        folder = Get_Path_Folder(folder);
    }
}

}  // namespace

bool Rename_Track(LibraryContext& c, int index)
{
    TrackList& list = c.lib.MP3_List;
    const QString folder = list.field(index, ColFolder);
    const QString oldPath = folder + QLatin1Char('/') + list.field(index, ColFilename);
    const int rules = list.field(index, ColVA) == QLatin1String("No") ? 0 : 1;
    const QString newName = MakeNewTrack(c, index, rules);
    const QString newPath = folder + QLatin1Char('/') + newName;
    if (oldPath == newPath)
        return true;

    const CaseChange sameOne = File_Exists(newPath) && differOnlyInCase(oldPath, newPath)
                                   ? changeCase(oldPath, newPath)
                                   : CaseChange::TwoFiles;
    if (sameOne == CaseChange::Failed)
        return moveFailure(c, true, oldPath);
    if (sameOne == CaseChange::Done) {
        // The same file under another spelling: renamed, no question asked.
    } else if (File_Exists(newPath)) {
        if (!confirmReplacement(c, newPath))
            return true;
        if (maybeSameFile(oldPath, newPath))
            return moveFailure(c, true, oldPath);
        QFile::remove(newPath);
        if (c.lib.failAt("rename-move") || !moveFile(oldPath, newPath))
            return moveFailure(c, true, oldPath);
        // Two rows now stand for one file: the one renamed goes with its own
        // record. (Taking the ID of the selected row instead, which is the
        // same row for the Track command, would blank the record of a row
        // that stays when Selection, Album or All replace a file, and the
        // next import would hand that row's ID out again.)
        if (Remove_Track_Record(c, Track_ID_Of(list.field(index, ColID)))) {
            list.removeAt(index);
            Write_Album_Count(c);
        }
        return true;
    } else if (c.lib.failAt("rename-move") || !moveFile(oldPath, newPath)) {
        return moveFailure(c, true, oldPath);
    }
    list.setField(index, ColFilename, newName);
    stampRow(c, index, newPath);
    storeRow(c, index, oldPath, newPath, QStringLiteral("The following track is renamed:"));
    return true;
}

bool Relocate_Track(LibraryContext& c, int index, bool tidy)
{
    TrackList& list = c.lib.MP3_List;
    const TrackRow row = list.row(index);
    const QString oldFolder = row[ColFolder];
    const int rules = row[ColVA] == QLatin1String("No") ? 2 : 3;
    QString newFolder = Make_Track_Folder(c, rules, row[ColArtist], row[ColAlbum], row[ColGenre], row[ColYear]);
    if (newFolder.endsWith(QLatin1Char('.')) && !newFolder.endsWith(QLatin1String(".."))) {
        // The original platform dropped a trailing dot when it made the
        // folder; here the folder is made under the shortened name instead.
        QDir().rmdir(newFolder);
        newFolder.chop(1);
        QDir().mkdir(newFolder);
    }
    if (oldFolder == newFolder)
        return true;

    const QString oldPath = Add_Backslash(oldFolder) + row[ColFilename];
    const QString newPath = Add_Backslash(newFolder) + row[ColFilename];
    const CaseChange sameFolder =
        differOnlyInCase(oldFolder, newFolder) ? changeFolderCase(oldFolder, newFolder) : CaseChange::TwoFiles;
    if (sameFolder == CaseChange::Failed)
        return moveFailure(c, false, oldPath);
    if (sameFolder == CaseChange::TwoFiles) {
        if (File_Exists(newPath)) {
            if (!confirmReplacement(c, newPath))
                return true;
            if (maybeSameFile(oldPath, newPath)) {
                moveFailure(c, false, oldPath);
                return true;
            }
            QFile::remove(newPath);
        }
        if (!c.lib.failAt("relocate-move"))
            moveFile(oldPath, newPath);
        if (!File_Exists(newPath)) {
            moveFailure(c, false, oldPath);
            return true;  // guarded: the command goes on with the next track
        }
        // A move that copied but could not delete leaves the source behind;
        // it goes now, unless both names lead to the one file.
        if (File_Exists(oldPath) && !maybeSameFile(oldPath, newPath))
            QFile::remove(oldPath);
    }
    list.setField(index, ColFolder, newFolder);
    stampRow(c, index, newPath);
    storeRow(c, index, oldPath, newPath, QStringLiteral("The following track is relocated:"));
    if (!tidy || oldFolder == c.app.Quarantaine_Folder)
        return true;
    tidyUp(oldFolder, newFolder, c.app.Library_Main_Folder);
    return true;
}

void Begin_Record_Batch(LibraryContext& c)
{
    c.lib.records = {};
    c.lib.records.active = true;
    Begin_Sync_Batch();
}

void End_Record_Batch(LibraryContext& c)
{
    End_Track_Session(c);
    End_Sync_Batch();
}

}  // namespace sonorit
