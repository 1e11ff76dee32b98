#include "track_import.h"

#include <QDir>
#include <QFile>
#include <QUtf8StringView>
#include <dirent.h>
#include <sys/stat.h>

#include "library/refresh.h"
#include "library/slots.h"
#include "library/track_fields.h"
#include "library/track_moves.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/file_copy.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tags/mpeg_info.h"

namespace sonorit {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

void fileError(LibraryContext& c, const QString& path)
{
    c.ui.message(QStringLiteral("The following track couldn't be added to the library:") + kCrLf + path + kCrLf
                     + QStringLiteral("The most common cause is that the path/filename is to long."),
                 QStringLiteral("File error"), Buttons::Ok, Icon::Warning);
}

// Up to five copies, stopping once the target is there. The copy lands
// complete or not at all, so a failed attempt leaves no half file behind.
void copyIntoQuarantaine(LibraryContext& c, const QString& source, const QString& target)
{
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (!c.lib.failAt("import-copy"))
            copyFileKeepingTime(source, target);
        c.ui.yield();
        if (File_Exists(target))
            return;
    }
}

// The tags decide whether the track leaves Quarantaine: an album always, an
// artist too unless it belongs to a various-artists album.
void placeTrack(LibraryContext& c, int row)
{
    const TrackRow& r = c.lib.MP3_List.row(row);
    const bool enough = r[ColVA] == QLatin1String("No") ? !r[ColArtist].isEmpty() && !r[ColAlbum].isEmpty()
                                                        : !r[ColAlbum].isEmpty();
    if (enough)
        Relocate_Track(c, row, true);
    c.ui.yield();
}

// "Following track allready exists": true when the track is in the library
// afterwards; `row` receives its row.
bool targetExists(LibraryContext& c, const QString& source, const QString& target, int* row)
{
    const Answer answer = c.ui.question(QStringLiteral("Following track allready exists in the library:") + kCrLf
                                           + target + kCrLf + QStringLiteral("Overwrite this file?"),
                                       QStringLiteral("File exists"), Buttons::YesNo, Icon::Question, Answer::No);
    if (answer == Answer::Yes) {
        QFile::remove(target);
        copyIntoQuarantaine(c, source, target);
        // The one case in which move mode moves: the source goes only once
        // its copy stands in Quarantaine.
        if (c.app.Import_Mode == 1 && File_Exists(target))
            QFile::remove(source);
    }
    if (!File_Exists(target))
        return false;
    const TrackList& list = c.lib.MP3_List;
    for (int i = 0; i < list.count(); ++i) {
        if (list.field(i, ColFolder) + QLatin1Char('/') + list.field(i, ColFilename) == target) {
            *row = i;
            return true;
        }
    }
    if (!Add_MP3(c, target))
        return false;
    *row = list.count() - 1;
    return true;
}

}  // namespace

bool Add_MP3(LibraryContext& c, const QString& path)
{
    // A "|" in the path would split the record into more fields than a
    // track has: such a file is left out rather than stored broken.
    if (path.contains(QLatin1Char('|'))) {
        c.ui.message(Get_Path_File(path) + QStringLiteral(" failed on importing to the Library."),
                     QStringLiteral("Add MP3 Error"), Buttons::Ok, Icon::None);
        return false;
    }
    TrackRow row;
    Track_Fields_From_File(c, path, row);
    const int slotsBefore = c.lib.ID_COUNT;
    // A new slot writes the track count it will have along with ID_COUNT, so
    // that an import rewrites the library file once. Killed before the record
    // lands, the file promises one track too many, which the next opening
    // repairs.
    row[ColID] = Get_ID(c, c.lib.MP3_List.count() + 1);
    const int id = Track_ID_Of(row[ColID]);
    // A free slot is filled where it stands, the highest one too; only a new
    // slot is appended.
    const bool newSlot = c.lib.ID_COUNT > slotsBefore;
    bool stored = false;
    if (id > 0) {
        const QString text = Join_Track_Record(row);
        // The record writers make their five attempts each.
        stored = !c.lib.failAt("add-record")
                 && (newSlot ? Append_Track_Record(c, id, text) : Replace_Track_Record(c, id, text));
    }
    if (stored) {
        Add_Row_To_Search(c, row);
        c.lib.MP3_List.append(std::move(row));
        if (!newSlot)
            Write_Album_Count(c);
        return true;
    }
    if (id > 0) {
        if (!newSlot) {
            c.lib.Free_IDs.push_back(id);
            Write_IDfile(c);
        } else {
            --c.lib.ID_COUNT;
            Write_ID_Count(c, c.lib.MP3_List.count());
        }
    }
    c.ui.message(Get_Path_File(path) + QStringLiteral(" failed on importing to the Library."),
                 QStringLiteral("Add MP3 Error"), Buttons::Ok, Icon::None);
    return false;
}

bool Import_Track(LibraryContext& c, const QString& source)
{
    const QString target = Add_Backslash(c.app.Quarantaine_Folder) + Get_Path_File(source);
    // Made when the library opened; made again if it went since.
    QDir().mkpath(c.app.Quarantaine_Folder);
    int row = -1;
    bool added = false;
    if (File_Exists(target)) {
        added = targetExists(c, source, target, &row);
    } else {
        copyIntoQuarantaine(c, source, target);
        if (!File_Exists(target)) {
            fileError(c, target);
            return false;
        }
        added = Add_MP3(c, target);
        if (added)
            row = c.lib.MP3_List.count() - 1;
        else
            QFile::remove(target);  // a copy, never the user's source
    }
    if (!added) {
        fileError(c, target);
        return false;
    }
    placeTrack(c, row);
    return true;
}

void mnu_Library_Add_MP3(LibraryContext& c)
{
    const QString start = c.lib.Last_Import_Folder.isEmpty() ? c.app.paths.Music_Folder : c.lib.Last_Import_Folder;
    const QString path = File_Dialog(c.ui, 1, QStringLiteral("Open"), QString(), QStringLiteral("MP3 File (*.mp3)"),
                                     QStringLiteral("*.mp3"), start, QStringLiteral("mp3"), false);
    if (!path.isEmpty() && File_Exists(path) && Is_Mpeg(path)) {
        if (Import_Track(c, path))
            c.lib.MP3_List.select(c.lib.MP3_List.count() - 1);  // the END key: the last row
    }
    c.ui.focusLibraryList();
}

QStringList Sub_Folders(const QString& folder)
{
    return QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}

QStringList Mp3_Files(const QString& folder)
{
    // "*.mp3" matches without regard to case, as it did on the original platform.
    return QDir(folder).entryList({QStringLiteral("*.mp3")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
}

RawFolder Read_Raw_Folder(const QString& folder)
{
    RawFolder raw;
    DIR* dir = ::opendir(QFile::encodeName(folder).constData());
    if (!dir)
        return raw;
    while (const dirent* e = ::readdir(dir)) {
        const QByteArray name(e->d_name);
        if (!QUtf8StringView(name).isValidUtf8())
            raw.undecodable << QString::fromUtf8(name);
        else if (name.startsWith('.') && Is_Partial_File_Name(QString::fromUtf8(name)))
            raw.partials = true;
    }
    ::closedir(dir);
    return raw;
}

bool VisitedFolders::enter(const QString& folder)
{
    struct stat st;
    if (::stat(QFile::encodeName(folder).constData(), &st) != 0)
        return false;
    return seen_.insert({quint64(st.st_dev), quint64(st.st_ino)}).second;
}

namespace {

void directoryScan(LibraryContext& c, const QString& folder, bool recursive, VisitedFolders& visited)
{
    if (!visited.enter(folder))
        return;
    if (recursive) {
        for (const QString& sub : Sub_Folders(folder)) {
            const QString path = Add_Backslash(folder) + sub;
            if (Add_Backslash(path) == c.app.Library_Main_Folder) {
                c.ui.message(QStringLiteral("Current library is part of the tree you selected and will be skipped!"),
                             QStringLiteral("No need to re-import current library"), Buttons::Ok, Icon::None);
                continue;
            }
            directoryScan(c, path, true, visited);
        }
    }
    const QStringList files = Mp3_Files(folder);
    if (files.isEmpty())
        return;
    c.ui.setLabel17(QStringLiteral("Reading Folder: ") + folder);
    c.ui.setProgressRange(0, static_cast<int>(files.size()) - 1);
    for (int i = 0; i < files.size(); ++i) {
        c.ui.setProgressValue(i);
        c.ui.setLabel18(QStringLiteral("Importing Track ") + QString::number(i + 1) + QStringLiteral(" from ")
                        + QString::number(files.size()) + QStringLiteral(": ") + files[i]);
        c.ui.yield();
        const QString path = Add_Backslash(folder) + files[i];
        if (Is_Mpeg(path))
            Import_Track(c, path);
    }
}

}  // namespace

void DirectoryScan(LibraryContext& c, const QString& folder, bool recursive)
{
    VisitedFolders visited;
    directoryScan(c, folder, recursive, visited);
}

namespace {

void scan(LibraryContext& c, bool tree)
{
    const QString folder = Browse_For_Folder(c.ui);
    if (!folder.isEmpty()) {
        const QString withSlash = Add_Backslash(folder);
        const QString main = c.app.Library_Main_Folder;
        if (withSlash.size() >= main.size() && withSlash.toLower().startsWith(main.toLower())) {
            const QString text =
                (tree ? QStringLiteral("The tree you selected is part of the current library,")
                      : QStringLiteral("The folder you selected is part of the current library,"))
                + kCrLf + QStringLiteral("you should use the 'Refresh' function instead!") + kCrLf + kCrLf
                + QStringLiteral("Run 'Refresh' now?");
            const QString title = tree ? QStringLiteral("You cannot 'Import' Library trees!")
                                       : QStringLiteral("You cannot 'Import' Library folders!");
            if (c.ui.message(text, title, Buttons::YesNo, Icon::None) == Answer::Yes)
                mnu_Library_Refresh(c);
        } else {
            c.ui.lockMainWindow();
            c.ui.showProgress();
            c.ui.shieldLibrary();
            c.lib.MP3_List.setHidden(true);
            DirectoryScan(c, folder, tree);
            c.lib.MP3_List.setHidden(false);
            c.ui.unshieldLibrary();
            c.ui.unlockMainWindow();
        }
    }
    c.ui.focusLibraryList();
    if (!c.lib.MP3_List.isEmpty())
        c.lib.MP3_List.select(c.lib.MP3_List.count() - 1);
}

}  // namespace

// Many small writes: synced together, not one by one.
void mnu_Library_Scan_Folder(LibraryContext& c)
{
    const SyncBatch syncs;
    scan(c, false);
}

void mnu_Library_Scan_Tree(LibraryContext& c)
{
    const SyncBatch syncs;
    scan(c, true);
}

}  // namespace sonorit
