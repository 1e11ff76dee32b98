#include "backup.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <vector>

#include "library/backup_files.h"
#include "library/library_places.h"
#include "library/refresh.h"
#include "library/track_import.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/helpers.h"
#include "shell/ini_file.h"
#include "shell/ui_port.h"
#include "tags/mpeg_info.h"

namespace sonorit {

namespace {

const QString kLfCr = QStringLiteral("\n\r");
const QString kCovers[] = {QStringLiteral("Folder.jpg"), QStringLiteral("AlbumArtSmall.jpg")};

struct Backup {
    LibraryContext& c;
    QString main, bak;  // both ending in "/"
    QStringList paths;  // the backup path of each track that exists, in list order
    QHash<QString, int> folderTracks;  // backup folder -> its tracks
    QSet<QString> unread;  // folders the clean-up found complete
    int added = 0, updated = 0, missing = 0;
    QString madeFolder;  // the target folder made last

    void account(const QString& target, const QString& path)
    {
        paths << path;
        ++folderTracks[target];
    }
    void makeFolder(const QString& folder)
    {
        if (folder != madeFolder) {
            QDir().mkpath(folder);  // a failure shows in the copy that follows
            madeFolder = folder;
        }
    }
};

void closePanel(UiPort& ui)
{
    ui.hideProgress();
    ui.unshieldLibrary();
    ui.unlockMainWindow();
}

bool copyFailure(Backup& b, const QString& source, const QString& target, const QString& reason)
{
    closePanel(b.c.ui);
    b.c.ui.message(QStringLiteral("The backup has stopped: this track could not be copied.") + kLfCr + source + kLfCr
                       + QStringLiteral("to ") + target + kLfCr + QStringLiteral("Reason: ") + reason,
                   QStringLiteral("Backup failure"), Buttons::Ok, Icon::Critical);
    return false;
}

bool copyTrack(Backup& b, const QString& source, const QString& target)
{
    const CopyResult copied = Copy_Keeping_Time(source, target);
    return copied.ok || copyFailure(b, source, target, copied.failure);
}

struct BackupChoice {
    QString folder;  // empty: no backup
    bool refused = false;
};

// The backup folder: the one set, or a new choice written to the library
// file at once.
BackupChoice fixBackupFolder(LibraryContext& c)
{
    AppState& a = c.app;
    if (!a.Backup_Folder.isEmpty()) {
        const QString text = QStringLiteral("The current Backup folder is set to:") + kLfCr + a.Backup_Folder + kLfCr
                             + QStringLiteral("Use this folder?");
        if (c.ui.message(text, QStringLiteral("Select Backup folder"), Buttons::YesNo, Icon::Question) == Answer::Yes) {
            if (Refuse_Overlapping_Backup(c, a.Backup_Folder))
                return {QString(), true};
            return {a.Backup_Folder};
        }
    } else {
        c.ui.message(QStringLiteral("Please select backup media and main folder on next step."), QStringLiteral("Info"),
                     Buttons::Ok, Icon::Information);
    }
    const QString chosen = Browse_For_Folder(c.ui);
    if (chosen.isEmpty())
        return {};
    const QString folder = Add_Backslash(chosen);
    if (Refuse_Overlapping_Backup(c, folder))
        return {QString(), true};
    a.Backup_Folder = folder;
    IniFile(a.Library_File).write(QStringLiteral("GENERAL"), QStringLiteral("BAK_FOLDER"), folder);
    a.options.backupFolderText = folder;
    return {folder};
}

void copyCovers(Backup& b, const QString& folder, const QString& target)
{
    UiPort& ui = b.c.ui;
    for (const QString& name : kCovers) {
        const QString source = folder + QLatin1Char('/') + name;
        const FileTime sourceTime = File_Time(source);
        if (!sourceTime.exists)
            continue;
        const QString copy = target + QLatin1Char('/') + name;
        const FileTime copyTime = File_Time(copy);
        if (copyTime.exists && !Is_Later(sourceTime, copyTime))
            continue;
        ui.setLabel18(copyTime.exists ? QStringLiteral("Refreshing ") + name
                                      : QStringLiteral("Saving ") + name + QStringLiteral(" to ") + target);
        b.makeFolder(target);
        Copy_Keeping_Time(source, copy);  // covers are a courtesy: a failure passes
    }
}

bool askRestore(UiPort& ui, const QString& name)
{
    const QString text = QStringLiteral("The current library refers to track ") + name + QLatin1Char('.') + kLfCr
                         + QStringLiteral("This track don't exist any longer, however...") + kLfCr
                         + QStringLiteral("the track is still available in the current backup.") + kLfCr
                         + QStringLiteral("Do you want to restore that track?");
    return ui.question(text, QStringLiteral("Restore missing track?"), Buttons::YesNo, Icon::Question, Answer::Yes)
           == Answer::Yes;
}

// One row of the copy step; false when a failed copy stopped the command.
bool backUpRow(Backup& b, int row, QString& lastFolder)
{
    UiPort& ui = b.c.ui;
    const TrackList& list = b.c.lib.MP3_List;
    const QString folder = list.field(row, ColFolder);
    const QString name = list.field(row, ColFilename);
    const QString path = folder + QLatin1Char('/') + name;
    const QString target = Folder_Below(folder, b.main, b.bak);
    const QString copy = target + QLatin1Char('/') + name;
    if (folder != lastFolder) {
        copyCovers(b, folder, target);
        lastFolder = folder;
    }
    const FileTime time = File_Time(path);
    const FileTime copyTime = File_Time(copy);
    if (time.exists) {
        b.account(target, copy);
        if (copyTime.exists && Is_Later(time, copyTime)) {
            ui.setLabel18(QStringLiteral("Refreshing Track ") + name);
            if (!copyTrack(b, path, copy))
                return false;
            ++b.updated;
        } else if (!copyTime.exists) {
            ui.setLabel18(QStringLiteral("Saving Track ") + name + QStringLiteral(" to ") + target);
            b.makeFolder(target);
            if (!copyTrack(b, path, copy))
                return false;
            ++b.added;
        }
        return true;
    }
    if (!copyTime.exists) {
        ++b.missing;
        return true;
    }
    if (askRestore(ui, name)) {
        ui.setLabel18(QStringLiteral("Restoring Track ") + name + QStringLiteral(" to ") + folder);
        QDir().mkpath(folder);
        if (!copyTrack(b, copy, path))
            return false;
        b.account(target, copy);
    } else {
        ui.setLabel18(QStringLiteral("Removing Track ") + name + QStringLiteral(" from ") + target);
        QFile::remove(copy);
        ++b.missing;
    }
    return true;
}

struct Found {
    QString folder, name, path;
};

// The mp3 files of the backup folders that hold more of them than the
// library has tracks there; a folder whose count matches holds exactly the
// copies just made or confirmed, and is not read. A folder is known by its
// own spelling: one that differs in case is read, and its files are matched
// to the tracks without regard to case.
std::vector<Found> scanBackup(Backup& b)
{
    UiPort& ui = b.c.ui;
    std::vector<Found> found;
    Walk_Mp3_Folders(b.bak, b.main, [&](const QString& folder, const QStringList& names) {
        const auto known = b.folderTracks.constFind(folder);
        if (known != b.folderTracks.constEnd() && names.size() <= *known) {
            b.unread.insert(folder);
            return;
        }
        for (const QString& name : Collect_Mp3_Tracks(ui, folder, names))
            found.push_back({folder, name, folder + QLatin1Char('/') + name});
    });
    std::stable_sort(found.begin(), found.end(), [](const Found& x, const Found& y) {
        const int byFolder = QString::compare(x.folder, y.folder, Qt::CaseInsensitive);
        return byFolder != 0 ? byFolder < 0 : QString::compare(x.name, y.name, Qt::CaseInsensitive) < 0;
    });
    return found;
}

// A backup folder left without mp3 files loses the covers the backup put
// there, and goes when nothing else is in it; so do the folders above it that
// it leaves empty. Anything else in it stays.
void removeEmptiedFolder(const Backup& b, const QString& folder)
{
    if (!Mp3_Files(folder).isEmpty())
        return;
    for (const QString& name : kCovers)
        QFile::remove(folder + QLatin1Char('/') + name);
    QFile::remove(folder + QStringLiteral("/desktop.ini"));
    const QString root = Without_Slash(b.bak);
    QString at = folder;
    while (at.size() > root.size() && at.startsWith(b.bak) && QDir().rmdir(at))
        at = Get_Path_Folder(at);
}

// The track each file of the scan stands for, "" for none. A file of the
// exact path of a track comes first; one that differs only in case stands
// for a track whose own spelling was not met, as on a medium that ignores
// case. The tracks of the folders not read have their copies already.
std::vector<QString> matchCopies(const Backup& b, const std::vector<Found>& found)
{
    const QSet<QString> exact(b.paths.begin(), b.paths.end());
    QHash<QString, QString> unmatched;  // lower case -> the track's path
    for (const QString& path : exact) {
        if (!b.unread.contains(Get_Path_Folder(path)))
            unmatched.insert(path.toLower(), path);
    }
    std::vector<QString> entry(found.size());
    for (size_t i = 0; i < found.size(); ++i) {
        if (exact.contains(found[i].path)) {
            entry[i] = found[i].path;
            unmatched.remove(found[i].path.toLower());
        }
    }
    for (size_t i = 0; i < found.size(); ++i) {
        if (entry[i].isEmpty())
            entry[i] = unmatched.take(found[i].path.toLower());
    }
    return entry;
}

void cleanUp(Backup& b)
{
    UiPort& ui = b.c.ui;
    ui.setLabel17(QString());
    ui.setLabel18(QString());
    ui.setProgressValue(0);
    const std::vector<Found> found = scanBackup(b);
    ui.setLabel17(QStringLiteral("Removing non-existing Library tracks from Backup"));
    if (found.empty())
        return;
    ui.setProgressRange(0, int(found.size()));
    const std::vector<QString> entry = matchCopies(b, found);
    for (size_t i = 0; i < found.size(); ++i) {
        ui.setProgressValue(int(i) + 1);
        ui.yield();
        if (!entry[i].isEmpty()) {
            ui.setLabel18(QStringLiteral("Confirming ") + entry[i]);
            continue;
        }
        ui.setLabel18(QStringLiteral("Removing ") + found[i].name + QStringLiteral(" from ") + found[i].folder);
        QFile::remove(found[i].path);
        removeEmptiedFolder(b, found[i].folder);
    }
}

void report(Backup& b)
{
    const QString text = QString::number(b.c.lib.MP3_List.count()) + QStringLiteral(" tracks in Library.") + kLfCr
                         + QString::number(b.added) + QStringLiteral(" tracks added to backup folder.") + kLfCr
                         + QString::number(b.updated) + QStringLiteral(" tracks updated.");
    b.c.ui.message(text, QStringLiteral("Backup report"), Buttons::Ok, Icon::None);
}

}  // namespace

bool mnu_Library_Backup(LibraryContext& c)
{
    TrackList& list = c.lib.MP3_List;
    if (list.isEmpty())
        return true;
    const QString check =
        QStringLiteral("Before making this Backup all tracks will be checked to see if they are located inside the "
                       "current Library Folder. Any track located outside this Library Folder will be relocated!")
        + kLfCr + QStringLiteral("Proceed with Backup procedure?");
    if (c.ui.message(check, QStringLiteral("Location check!"), Buttons::YesNo, Icon::Warning) != Answer::Yes)
        return true;
    const BackupChoice choice = fixBackupFolder(c);
    if (choice.folder.isEmpty())
        return !choice.refused;

    const SyncBatch syncs;  // the copies are synced together, not one by one
    Sort_By_Place(list);
    c.ui.lockMainWindow();
    c.ui.showProgress();
    c.ui.shieldLibrary();
    if (!Check_Track_Locations(c)) {
        closePanel(c.ui);
        return false;
    }
    Sort_By_Place(list);

    Backup b{c, c.app.Library_Main_Folder, choice.folder, {}, {}, {}, 0, 0, 0, {}};
    b.paths.reserve(list.count());
    c.ui.setLabel17(QStringLiteral("Backup tracks to ") + b.bak);
    c.ui.setProgressRange(0, list.count());
    QString lastFolder;
    for (int row = 0; row < list.count(); ++row) {
        c.ui.setProgressValue(row + 1);
        c.ui.yield();
        if (!backUpRow(b, row, lastFolder))
            return false;
    }
    cleanUp(b);
    report(b);
    closePanel(c.ui);
    if (b.missing > 0) {
        const QString text = QStringLiteral("One or more tracks in the current library don't exist anymore!") + kLfCr
                             + QStringLiteral("Do you want to refresh the current library?");
        if (c.ui.message(text, QStringLiteral("Library not up-to-date"), Buttons::YesNo, Icon::Question) == Answer::Yes)
            mnu_Library_Refresh(c);
    }
    return true;
}

}  // namespace sonorit
