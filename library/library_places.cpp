#include "library_places.h"

#include "library/track_moves.h"
#include "shell/app_state.h"
#include "shell/ui_port.h"

namespace sonorit {

void Sort_By_Place(TrackList& list)
{
    list.sortByColumn(ColFilename);
    list.sortByColumn(ColFolder);
    if (!list.isEmpty())
        list.select(0);
}

bool Folder_Is_Inside(const QString& folder, const QString& root)
{
    const QString withSlash = folder + QLatin1Char('/');
    return !root.isEmpty() && withSlash.size() >= root.size() && withSlash.startsWith(root);
}

bool Check_Track_Locations(LibraryContext& c, const QString& alsoInside)
{
    TrackList& list = c.lib.MP3_List;
    const QString& main = c.app.Library_Main_Folder;
    c.ui.setLabel17(QStringLiteral("Checking track locations in current Library"));
    c.ui.setLabel18(QString());
    c.ui.setProgressRange(0, list.count());
    c.ui.showProgress();
    bool ok = true;
    Begin_Record_Batch(c);
    for (int row = 0; row < list.count(); ++row) {
        c.ui.setProgressValue(row + 1);
        c.ui.yield();
        const QString& folder = list.field(row, ColFolder);
        if (!Folder_Is_Inside(folder, main) && !Folder_Is_Inside(folder, alsoInside)) {
            c.ui.setLabel18(QStringLiteral("Relocating ") + list.field(row, ColFilename));
            if (!Relocate_Track(c, row, false)) {
                ok = false;
                break;
            }
        }
        c.ui.yield();
    }
    End_Record_Batch(c);
    return ok;
}

QString Folder_Below(const QString& folder, const QString& oldRoot, const QString& newRoot)
{
    QString target = newRoot + folder.mid(oldRoot.size());
    if (target.size() > 1 && target.endsWith(QLatin1Char('/')))
        target.chop(1);
    return target;
}

}  // namespace sonorit
