#include "sort_library.h"

#include <QFile>
#include <QFileInfo>

#include "library/open_library.h"
#include "library/slots.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/file_copy.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

QString tempId(const LibraryContext& c) { return c.app.Data_Folder() + QStringLiteral("TempID.bak"); }
QString tempTrack(const LibraryContext& c) { return c.app.Data_Folder() + QStringLiteral("TempTrack.bak"); }

void finish(LibraryContext& c)
{
    c.ui.hideProgress();
    c.lib.MP3_List.setHidden(false);
    c.ui.unlockMainWindow();
}

// One attempt. The old files are copied aside first; the new ones replace
// them only when complete, and a failure between the two replacements puts
// the old Trackfile back.
bool sortOnce(LibraryContext& c)
{
    deleteUntilGone(tempId(c), &c.ui);
    deleteUntilGone(tempTrack(c), &c.ui);
    copyFileKeepingTime(c.app.IDfile, tempId(c));  // a missing IDfile is rebuilt empty anyway
    // Without a copy of the old Trackfile there would be nothing to put back
    // if the IDfile cannot be written below. (A Trackfile that has vanished is
    // simply written anew from the list.)
    if (!copyFileKeepingTime(c.app.Trackfile, tempTrack(c)) && QFileInfo::exists(c.app.Trackfile))
        return false;

    c.ui.setLabel17(QStringLiteral("Sorting Library File"));
    // The free IDs go first: a kill between the two replacements then leaves
    // the old Trackfile with too few free IDs, which the next open repairs,
    // and never free IDs that point at the renumbered, used slots.
    if (c.lib.failAt("sort-idfile") || !Write_File_Durably(c.app.IDfile, QByteArray())) {
        copyFileKeepingTime(tempId(c), c.app.IDfile);
        return false;
    }
    if (!Write_Records_In_List_Order(c)) {
        copyFileKeepingTime(tempId(c), c.app.IDfile);
        return false;
    }
    return true;
}

}  // namespace

bool Write_Records_In_List_Order(LibraryContext& c)
{
    const TrackList& list = c.lib.MP3_List;
    c.lib.lastRecord = {};
    c.lib.records.loaded = false;
    DurableFile out(c.app.Trackfile);
    if (!out.open())
        return false;
    const int n = list.count();
    for (int i = 1; i <= n; ++i) {
        TrackRow row = list.row(i - 1);
        row[ColID] = QStringLiteral("TRACK ") + QString::number(i);
        const QByteArray record = Encode_Track_Record(i, Join_Track_Record(row));
        if (record.isEmpty() || c.lib.failAt("sort-write") || out.write(record) != record.size()) {
            out.cancelWriting();
            return false;
        }
        c.ui.setLabel18(QStringLiteral("Saving Track ") + QString::number(i) + QStringLiteral(" from ")
                        + QString::number(n) + QStringLiteral(": ") + row[ColFilename]);
        c.ui.setProgressValue(i);
        c.ui.yield();
    }
    return !c.lib.failAt("sort-commit") && out.commit();
}

void Renumber_List_And_Counts(LibraryContext& c)
{
    TrackList& list = c.lib.MP3_List;
    list.beginBulk();
    for (int i = 0; i < list.count(); ++i)
        list.setField(i, ColID, QStringLiteral("TRACK ") + QString::number(i + 1));
    list.endBulk();
    c.lib.Free_IDs.clear();
    c.lib.ID_COUNT = list.count();
    // The rewrite leaves no free slot, so both counts are the item count. A
    // stale ALBUM_COUNT (from a repair that dropped tracks, or a hand-edited
    // file) would otherwise promise free IDs that the empty IDfile cannot
    // give, and every later open would repair again.
    Write_ID_Count(c, list.count());
}

bool Sort_Library_File(LibraryContext& c)
{
    TrackList& list = c.lib.MP3_List;
    if (list.isEmpty())
        return false;
    list.sortByColumn(ColFilename);
    list.sortByColumn(ColFolder);
    c.ui.lockMainWindow();
    c.ui.setLabel17(QString());
    c.ui.setLabel18(QString());
    c.ui.showProgress();
    c.ui.setProgressRange(0, list.count());
    c.ui.shieldLibrary();

    for (int attempt = 0; attempt < 5; ++attempt) {
        if (sortOnce(c)) {
            QFile::remove(tempId(c));
            QFile::remove(tempTrack(c));
            Renumber_List_And_Counts(c);
            finish(c);
            return true;
        }
        QFile::remove(tempId(c));
        QFile::remove(tempTrack(c));
        c.ui.yield();
    }
    finish(c);
    c.ui.message(QStringLiteral("Sorting ID numbers of current librarytracks failed, no changes are made,\r\n"
                                "please select the menufunction Libray => Sort later."),
                 QStringLiteral("ID Sort failure"), Buttons::Ok, Icon::Warning);
    return false;
}

void mnu_Library_Sort(LibraryContext& c)
{
    TrackList& list = c.lib.MP3_List;
    if (list.isEmpty())
        return;
    const QString name = list.selected() >= 0 ? list.field(list.selected(), ColFilename) : QString();
    Sort_Library_File(c);
    MP3Find(list, name, 1, 1);
}

}  // namespace sonorit
