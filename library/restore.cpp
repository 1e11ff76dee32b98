#include "backup.h"

#include <QDir>
#include <algorithm>
#include <vector>

#include "library/backup_files.h"
#include "library/library_places.h"
#include "library/open_library.h"
#include "library/refresh.h"
#include "shell/app_state.h"
#include "shell/ui_port.h"
#include "tags/mpeg_info.h"

namespace sonorit {

namespace {

const QString kLfCr = QStringLiteral("\n\r");

struct Copy {
    QString folder, name;
};

void closePanel(UiPort& ui)
{
    ui.hideProgress();
    ui.unshieldLibrary();
    ui.unlockMainWindow();
}

// Every mp3 file below the backup folder, by folder and then by name.
std::vector<Copy> scanBackup(LibraryContext& c)
{
    UiPort& ui = c.ui;
    std::vector<Copy> found;
    Walk_Mp3_Folders(c.app.Backup_Folder, c.app.Library_Main_Folder, [&](const QString& folder, const QStringList& names) {
        for (const QString& name : Collect_Mp3_Tracks(ui, folder, names))
            found.push_back({folder, name});
    });
    std::stable_sort(found.begin(), found.end(), [](const Copy& x, const Copy& y) {
        const int byFolder = QString::compare(x.folder, y.folder, Qt::CaseInsensitive);
        return byFolder != 0 ? byFolder < 0 : QString::compare(x.name, y.name, Qt::CaseInsensitive) < 0;
    });
    return found;
}

void finish(LibraryContext& c, const QString& remembered)
{
    closePanel(c.ui);
    if (!remembered.isEmpty())
        MP3Find(c.lib.MP3_List, remembered, 1, 1);
}

// One backup file; false when a failed update stopped the command.
bool restoreCopy(LibraryContext& c, const Copy& copy)
{
    const QString source = copy.folder + QLatin1Char('/') + copy.name;
    const QString folder = Folder_Below(copy.folder, c.app.Backup_Folder, c.app.Library_Main_Folder);
    const QString target = folder + QLatin1Char('/') + copy.name;
    const FileTime targetTime = File_Time(target);
    if (targetTime.exists) {
        if (!Is_Later(File_Time(source), targetTime))
            return true;
        c.ui.setLabel18(QStringLiteral("Updating ") + copy.name);
        const CopyResult copied = Copy_Keeping_Time(source, target);
        if (copied.ok)
            return true;
        closePanel(c.ui);
        c.ui.message(QStringLiteral("The restore has stopped: this track could not be updated.") + kLfCr + target
                         + kLfCr + QStringLiteral("from ") + source + kLfCr + QStringLiteral("Reason: ")
                         + copied.failure,
                     QStringLiteral("Restore failure"), Buttons::Ok, Icon::Critical);
        return false;
    }
    c.ui.setLabel18(QStringLiteral("Restoring ") + target);
    QDir().mkpath(folder);
    if (!Copy_Keeping_Time(source, target).ok) {
        c.ui.message(QStringLiteral("The following track can not be restored: ") + kLfCr + copy.name + kLfCr
                         + QStringLiteral("The most common cause is that the path/filename is to long."),
                     QStringLiteral("File error"), Buttons::Ok, Icon::Warning);
    }
    return true;
}

}  // namespace

bool mnu_Library_Restore(LibraryContext& c)
{
    AppState& a = c.app;
    TrackList& list = c.lib.MP3_List;
    if (a.Backup_Folder.isEmpty()) {
        c.ui.message(QStringLiteral("There's no backup available for the current loaded library."),
                     QStringLiteral("Info"), Buttons::Ok, Icon::Warning);
        return false;
    }
    const QString text = QStringLiteral("The current Backup folder is set to:") + kLfCr + a.Backup_Folder + kLfCr
                         + QStringLiteral("Proceed restoring?");
    if (c.ui.message(text, QStringLiteral("Confirm Backup folder"), Buttons::YesNo, Icon::Question) != Answer::Yes)
        return true;
    if (Refuse_Overlapping_Backup(c, a.Backup_Folder))
        return false;

    c.ui.lockMainWindow();
    const QString remembered = list.selected() >= 0 ? list.field(list.selected(), ColFilename) : QString();
    c.ui.setLabel17(QString());
    c.ui.setLabel18(QString());
    c.ui.showProgress();
    c.ui.shieldLibrary();
    c.ui.setProgressRange(0, 1);
    c.ui.setProgressValue(0);
    const std::vector<Copy> copies = scanBackup(c);
    c.ui.setLabel17(QStringLiteral("Checking tracks"));
    c.ui.setLabel18(QString());
    if (copies.empty()) {
        c.ui.message(QStringLiteral("The backup could not be found or seems to be empty!"),
                     QStringLiteral("Restore failed"), Buttons::Ok, Icon::Warning);
        finish(c, remembered);
        return false;
    }
    c.ui.setProgressRange(0, int(copies.size()));
    for (size_t k = 0; k < copies.size(); ++k) {
        c.ui.yield();
        c.ui.setProgressValue(int(k) + 1);
        if (!restoreCopy(c, copies[k]))
            return false;
    }
    Sort_By_Place(list);
    c.ui.setLabel17(QString());
    c.ui.setLabel18(QString());
    c.ui.setProgressValue(0);
    mnu_Library_Refresh(c);
    finish(c, remembered);
    return true;
}

}  // namespace sonorit
