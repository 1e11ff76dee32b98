#include "refresh.h"

#include <QHash>
#include <algorithm>

#include "library/open_library.h"
#include "library/slots.h"
#include "library/sort_library.h"
#include "library/track_fields.h"
#include "library/track_import.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/file_stamp.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tags/mpeg_info.h"

namespace sonorit {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// The order of the merge is the list's own sort order, plain comparison of
// case-folded text, so that the list, the scan and the merge agree.
int Compare_Folded(const QString& foldedA, const QString& foldedB)
{
    return QString::compare(foldedA, foldedB, Qt::CaseSensitive);
}

// What phase 1 learns of each distinct existing track, in list order.
struct Known {
    QString path;  // "" once the merge has consumed it
    QString folder;
    QString name;
    QString changed;
    QString length;
};

// One mp3 file found by the scan.
struct Scanned {
    QString path, folder, name, changed, length;
    QString folderKey, nameKey;  // case-folded once for sort and merge
};

struct Refresh {
    LibraryContext& c;
    std::vector<Known> known;
    std::vector<int> removeIndex;  // rows, rising
    QHash<QString, int> folderTracks;  // case-folded folder -> distinct tracks
    std::vector<Scanned> scanned;
    VisitedFolders visited;
    RefreshCounts counts;
    QStringList leftOut;  // names the library cannot keep
};

// A name the library cannot keep: not valid UTF-8 (it would not lead back to
// the file), or holding the record's field separator.
bool unkeepableName(const QString& name)
{
    return name.contains(QChar::ReplacementCharacter) || name.contains(QLatin1Char('|'));
}

QString leftOutText(const QStringList& paths)
{
    if (paths.isEmpty())
        return QString();
    return kCrLf + kCrLf + QStringLiteral("Left out, as their names cannot be kept in the library:") + kCrLf
           + paths.join(kCrLf);
}

void sortListByPlace(TrackList& list)
{
    list.sortByColumn(ColFilename);
    list.sortByColumn(ColFolder);
}

void selectFirst(TrackList& list)
{
    if (!list.isEmpty())
        list.select(0);
}

void clearProgress(UiPort& ui)
{
    ui.setLabel17(QString());
    ui.setLabel18(QString());
    ui.setProgressValue(0);
}

void analyse(Refresh& r)
{
    LibraryContext& c = r.c;
    TrackList& list = c.lib.MP3_List;
    const int n = list.count();
    c.ui.setLabel17(QStringLiteral("Analysing Library Tracks"));
    c.ui.setProgressRange(0, n > 0 ? n : 1);
    r.known.reserve(static_cast<size_t>(n));
    QString lastKey;
    for (int i = 1; i <= n; ++i) {
        const TrackRow& row = list.row(i - 1);
        const QString path = row[ColFolder] + QLatin1Char('/') + row[ColFilename];
        c.ui.setProgressValue(i);
        if (i % 25 == 0 || i == n) {
            c.ui.setLabel18(QStringLiteral("Track ") + QString::number(i) + QStringLiteral(" from ")
                            + QString::number(n) + QStringLiteral(": ") + row[ColFilename]);
        }
        c.ui.yield();
        if (!File_Exists(path)) {
            r.removeIndex.push_back(i - 1);
            continue;
        }
        // Sorted by place, a duplicate is its predecessor's neighbour.
        const QString key = path.toCaseFolded();
        if (!r.known.empty() && key == lastKey) {
            r.removeIndex.push_back(i - 1);
            continue;
        }
        lastKey = key;
        r.known.push_back({path, row[ColFolder], row[ColFilename], row[ColLastChanged], row[ColFilelength]});
        ++r.folderTracks[row[ColFolder].toCaseFolded()];
    }
    clearProgress(c.ui);
}

void removeTracks(Refresh& r)
{
    LibraryContext& c = r.c;
    TrackList& list = c.lib.MP3_List;
    r.counts.removed = static_cast<int>(r.removeIndex.size());
    if (r.removeIndex.empty())
        return;
    c.ui.setLabel17(QStringLiteral("Removing non-existing and duplicate tracks"));
    c.ui.setProgressRange(0, r.counts.removed);
    int done = 0;
    // From the last down, so that the lower indexes stay valid.
    for (auto it = r.removeIndex.rbegin(); it != r.removeIndex.rend(); ++it, ++done) {
        c.ui.setProgressValue(done);
        c.ui.setLabel18(QStringLiteral("Removing ") + QString::number(*it + 1));
        c.ui.yield();
        list.select(*it);
        // A record that cannot be changed keeps its row, and the report still
        // counts it as removed.
        if (Remove_Track_Record(c, Track_ID_Of(list.field(*it, ColID)))) {
            list.removeAt(*it);
            Write_Album_Count(c);
        }
    }
    selectFirst(list);
}

// Reads the folders under `folder` in which the library knows fewer mp3 files
// than there are; a folder whose count did not change is not read.
void refreshScan(Refresh& r, const QString& folder)
{
    LibraryContext& c = r.c;
    if (!r.visited.enter(folder))
        return;
    for (const QString& sub : Sub_Folders(folder)) {
        if (sub.contains(QChar::ReplacementCharacter))
            r.leftOut << folder + QLatin1Char('/') + sub + QLatin1Char('/');
        else
            refreshScan(r, folder + QLatin1Char('/') + sub);
    }
    const RawFolder raw = Read_Raw_Folder(folder);
    for (const QString& name : raw.undecodable)
        r.leftOut << folder + QLatin1Char('/') + name;
    if (raw.partials)
        Remove_Partial_Files(folder);  // what a killed move across file systems left
    const QStringList files = Mp3_Files(folder);
    if (files.isEmpty())
        return;
    const auto known = r.folderTracks.constFind(folder.toCaseFolded());
    if (known != r.folderTracks.constEnd() && files.size() <= *known)
        return;
    c.ui.setLabel17(QStringLiteral("Reading Folder: ") + folder);
    c.ui.setProgressRange(0, static_cast<int>(files.size()) - 1);
    const QString folderKey = folder.toCaseFolded();
    for (int i = 0; i < files.size(); ++i) {
        c.ui.setProgressValue(i);
        c.ui.setLabel18(QStringLiteral("Collecting track ") + QString::number(i + 1) + QStringLiteral(" from ")
                        + QString::number(files.size()) + QStringLiteral(": ") + files[i]);
        c.ui.yield();
        const QString path = folder + QLatin1Char('/') + files[i];
        if (unkeepableName(files[i]) || folder.contains(QLatin1Char('|'))) {
            r.leftOut << path;
            continue;
        }
        if (!Is_Mpeg(path))
            continue;
        const FileStamp stamp = Read_File_Stamp(path);
        r.scanned.push_back({path, folder, files[i], stamp.changed, stamp.length, folderKey, files[i].toCaseFolded()});
    }
}

void scan(Refresh& r)
{
    LibraryContext& c = r.c;
    clearProgress(c.ui);
    c.ui.setProgressRange(0, 1);
    QString main = c.app.Library_Main_Folder;
    if (main.size() > 1 && main.endsWith(QLatin1Char('/')))
        main.chop(1);
    if (!main.isEmpty())
        refreshScan(r, main);
    std::stable_sort(r.scanned.begin(), r.scanned.end(), [](const Scanned& a, const Scanned& b) {
        const int byFolder = Compare_Folded(a.folderKey, b.folderKey);
        return byFolder != 0 ? byFolder < 0 : Compare_Folded(a.nameKey, b.nameKey) < 0;
    });
}

void addNew(Refresh& r, const QString& path)
{
    ++r.counts.added;
    r.c.ui.setLabel18(QStringLiteral("Adding ") + path + QStringLiteral(" to library"));
    r.c.ui.yield();  // the label shows the file being added, not the one before
    Add_MP3(r.c, path);
}

// Both sides are in the same order, so one pass finds what is new and what
// may have changed.
void merge(Refresh& r)
{
    LibraryContext& c = r.c;
    c.ui.setLabel17(QStringLiteral("Checking tracks"));
    const int total = static_cast<int>(r.scanned.size());
    c.ui.setProgressRange(0, total);
    std::vector<QString> knownFolderKeys(r.known.size()), knownNameKeys(r.known.size());
    for (size_t i = 0; i < r.known.size(); ++i) {
        knownFolderKeys[i] = r.known[i].folder.toCaseFolded();
        knownNameKeys[i] = r.known[i].name.toCaseFolded();
    }
    size_t p = 0;  // the next known entry to meet
    for (int k = 0; k < total; ++k) {
        const Scanned& s = r.scanned[static_cast<size_t>(k)];
        c.ui.setProgressValue(k + 1);
        c.ui.yield();
        bool isNew = true;
        for (; p < r.known.size(); ++p) {
            Known& u = r.known[p];
            if (u.path.isEmpty())
                continue;
            const int byFolder = Compare_Folded(s.folderKey, knownFolderKeys[p]);
            const int byName = byFolder != 0 ? 0 : Compare_Folded(s.nameKey, knownNameKeys[p]);
            if (byFolder < 0 || (byFolder == 0 && byName < 0))
                break;  // new: the same known entry meets the next scanned file
            if (byFolder == 0 && byName == 0) {
                isNew = false;
                c.ui.setLabel18(QStringLiteral("Checking ") + u.path);
                if (s.changed != u.changed || s.length != u.length) {
                    ++r.counts.refreshed;
                    c.ui.setLabel18(QStringLiteral("Refreshing ") + u.name);
                    // Rows and known entries still correspond one to one:
                    // phase 2 removed exactly what was left out, adds append.
                    Update_Track_From_File(c, u.path, static_cast<int>(p));
                }
                u.path.clear();
                ++p;
                break;
            }
        }
        if (isNew)
            addNew(r, s.path);
    }
}

// The leaner twin of the Sort: records in list order, IDs from 1, no copies.
void rewrite(LibraryContext& c)
{
    c.ui.setLabel17(QStringLiteral("Sorting Library File"));
    c.ui.setProgressRange(0, c.lib.MP3_List.count());
    if (!Write_Records_In_List_Order(c)) {
        c.ui.message(QStringLiteral("Sorting ID numbers of current librarytracks failed, no changes are made,\r\n"
                                    "please select the menufunction Libray => Sort later."),
                     QStringLiteral("ID Sort failure"), Buttons::Ok, Icon::Warning);
        return;
    }
    c.lib.Free_IDs.clear();
    Write_IDfile(c);
    Renumber_List_And_Counts(c);
}

void finish(Refresh& r, const QString& remembered)
{
    LibraryContext& c = r.c;
    TrackList& list = c.lib.MP3_List;
    list.setHidden(false);
    sortListByPlace(list);
    selectFirst(list);
    clearProgress(c.ui);
    list.setHidden(true);
    const QString text = QString::number(r.counts.removed) + QStringLiteral(" tracks were removed.") + kCrLf
                         + QString::number(r.counts.refreshed) + QStringLiteral(" tracks were refreshed.") + kCrLf
                         + QString::number(r.counts.added) + QStringLiteral(" tracks were added.")
                         + leftOutText(r.leftOut);
    if (r.counts.removed == 0 && r.counts.added == 0) {
        c.ui.message(text, QStringLiteral("Refresh Report"), Buttons::Ok, Icon::None);
    } else if (c.ui.message(text + kCrLf + kCrLf + QStringLiteral("Do you want to sort the tracks in the library file?"),
                            QStringLiteral("Refresh Report"), Buttons::YesNo, Icon::None)
               == Answer::Yes) {
        rewrite(c);
    }
    list.setHidden(false);
    c.ui.hideProgress();
    c.ui.unshieldLibrary();
    c.ui.unlockMainWindow();
    if (!remembered.isEmpty())
        MP3Find(list, remembered, 1, 1);
}

}  // namespace

RefreshCounts mnu_Library_Refresh(LibraryContext& c)
{
    const SyncBatch syncs;  // many small writes: synced together, not one by one
    TrackList& list = c.lib.MP3_List;
    const QString remembered = list.selected() >= 0 ? list.field(list.selected(), ColFilename) : QString();
    sortListByPlace(list);
    selectFirst(list);
    c.ui.lockMainWindow();
    c.ui.showProgress();
    c.ui.shieldLibrary();

    Refresh r{c, {}, {}, {}, {}, {}, {}, {}};
    list.setHidden(true);
    list.beginBulk();
    analyse(r);
    list.endBulk();
    list.setHidden(false);

    list.beginBulk();
    removeTracks(r);
    list.setHidden(true);
    // The filter of tracks under the Main Folder changes nothing; only its
    // text is shown.
    c.ui.setLabel17(QStringLiteral("Filtering tracks covered by Library Main Folder"));
    scan(r);
    if (!r.scanned.empty())
        merge(r);
    list.endBulk();
    finish(r, remembered);
    return r.counts;
}

void Update_Track_From_File(LibraryContext& c, const QString& path, int index)
{
    TrackList& list = c.lib.MP3_List;
    TrackRow row = list.row(index);
    const QString id = row[ColID];
    Track_Fields_From_File(c, path, row);
    row[ColID] = id;
    list.setRow(index, row);
    if (c.lib.failAt("update-record") || !Replace_Track_Record(c, Track_ID_Of(id), Join_Track_Record(row))) {
        c.ui.message(QStringLiteral("Could not update tags from ") + Get_Path_File(path), QStringLiteral("Tag Update Error"),
                     Buttons::Ok, Icon::None);
    }
}

}  // namespace sonorit
