#include "lifecycle.h"

#include <QDir>
#include <QFile>
#include <cstdio>

#include "library/naming_rules.h"
#include "library/open_library.h"
#include "library/refresh.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/helpers.h"
#include "shell/ini_file.h"
#include "shell/settings_families.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

const QString kGeneral = QStringLiteral("GENERAL");
const QString kCrLf = QStringLiteral("\r\n");
const QString kFilter = QStringLiteral("ZEV's MP3 Sonorit Library Files (*.vkt)");

void defaultDataFolder(AppState& a)
{
    if (a.Library_Data_Folder.isEmpty())
        a.Library_Data_Folder = Get_Path_Folder(a.paths.App_Path);
}

// The forced choice of the Main Folder: there is no way out but choosing.
QString chooseMainFolder(LibraryContext& c)
{
    QString folder;
    while (folder.isEmpty())
        folder = Browse_For_Folder(c.ui);
    return Add_Backslash(folder);
}

QString chooseBackupFolder(LibraryContext& c)
{
    const QString ask = QStringLiteral("Do you want to locate a Backup folder now?") + kCrLf
                        + QStringLiteral("If so, please locate that folder.");
    if (c.ui.message(ask, QStringLiteral("Library Backup?"), Buttons::YesNo, Icon::Question) != Answer::Yes)
        return QString();
    for (;;) {
        const QString folder = Browse_For_Folder(c.ui);
        if (!folder.isEmpty())
            return Add_Backslash(folder);
        const QString again = QStringLiteral("No folder was selected!") + kCrLf
                              + QStringLiteral("Discard Backup folder for now?");
        if (c.ui.message(again, QStringLiteral("Library Backup?"), Buttons::YesNo, Icon::Question) == Answer::Yes)
            return QString();
    }
}

bool createEmpty(const QString& path)
{
    return Write_File_Durably(path, QByteArray());
}

void deleteLibraryFiles(const QString& vkt)
{
    const IniFile ini(vkt);
    const QString trackfile = ini.read(kGeneral, QStringLiteral("ALBUMLIB_NAME"), QString());
    if (!trackfile.isEmpty())
        QFile::remove(trackfile);
    const QString idfile = ini.read(kGeneral, QStringLiteral("FREEID_NAME"), QString());
    if (!idfile.isEmpty())
        QFile::remove(idfile);
    QFile::remove(vkt);
}

}  // namespace

void Choose_Library_File_Names(LibraryContext& c)
{
    AppState& a = c.app;
    for (int n = 1000;; ++n) {
        const QString digits = QString::number(n).right(3);
        const QString track = a.Data_Folder() + QStringLiteral("Trackfile") + digits + QStringLiteral(".tri");
        const QString ids = a.Data_Folder() + QStringLiteral("IDfile") + digits + QStringLiteral(".tri");
        if (!File_Exists(track) && !File_Exists(ids)) {
            a.Trackfile = track;
            a.IDfile = ids;
            return;
        }
    }
}

void Create_Library(LibraryContext& c)
{
    AppState& a = c.app;
    defaultDataFolder(a);
    const QString path = File_Dialog(c.ui, 2, QStringLiteral("Save New Library As"), QString(), kFilter,
                                     QStringLiteral("*.vkt"), a.Library_Data_Folder, QStringLiteral("vkt"), false);
    if (path.isEmpty())
        return;
    QFile::remove(path);
    c.ui.lockMainWindow();

    a.Library_File = path;
    a.Library_File_Name = Get_Path_File(path);
    a.Library_Data_Folder = Get_Path_Folder(path);
    a.Library_Name = a.Library_File_Name.left(a.Library_File_Name.size() - 4);
    a.settings.SaveSetting(QStringLiteral("Folders"), QStringLiteral("Album"), a.Library_Data_Folder);
    c.ui.setCaption(QStringLiteral("ZEV's MP3 Sonorit - ") + a.Library_Name);

    a.Trackfile.clear();
    a.IDfile.clear();
    if (File_Exists(path)) {
        const IniFile old(path);
        a.Trackfile = old.read(kGeneral, QStringLiteral("ALBUMLIB_NAME"), QString());
        a.IDfile = old.read(kGeneral, QStringLiteral("FREEID_NAME"), QString());
        QFile::remove(path);
    }
    if (a.Trackfile.isEmpty())
        Choose_Library_File_Names(c);

    const IniFile vkt(path);
    vkt.write(kGeneral, QStringLiteral("ALBUMLIB_NAME"), a.Trackfile);
    vkt.write(kGeneral, QStringLiteral("FREEID_NAME"), a.IDfile);
    vkt.write(kGeneral, QStringLiteral("ALBUM_COUNT"), QString::number(c.lib.MP3_List.count()));
    vkt.write(kGeneral, QStringLiteral("ID_COUNT"), QString::number(c.lib.MP3_List.count()));

    c.ui.message(QStringLiteral("Please locate or create the Main Folder for this new Library..."),
                 QStringLiteral("Info"), Buttons::Ok, Icon::Information);
    a.Library_Main_Folder = chooseMainFolder(c);
    vkt.write(kGeneral, QStringLiteral("LIB_FOLDER"), a.Library_Main_Folder);
    a.Quarantaine_Folder = a.Library_Main_Folder + QStringLiteral("Quarantaine");
    QDir().mkdir(a.Quarantaine_Folder);

    a.Backup_Folder = chooseBackupFolder(c);
    vkt.write(kGeneral, QStringLiteral("BAK_FOLDER"), a.Backup_Folder);

    c.lib.Free_IDs.clear();
    c.lib.ID_COUNT = c.lib.MP3_List.count();
    c.lib.lastRecord = {};
    createEmpty(a.Trackfile);
    createEmpty(a.IDfile);
    c.ui.unlockMainWindow();

    c.ui.message(QStringLiteral("On the next step, the selected Library Folder and subfolders will be scanned to "
                                "collect any mp3 track."),
                 QStringLiteral("MP3 Scan"), Buttons::Ok, Icon::Warning);
    mnu_Library_Refresh(c);
    Apply_Default_Naming_Rules(c.lib.naming);
}

void mnu_Library_New(LibraryContext& c)
{
    AppState& a = c.app;
    Close_Library(c);
    Create_Library(c);
    if (!a.Library_File.isEmpty() && File_Exists(a.Library_File)) {
        a.Last_Used_Lib = a.Library_File;
        a.settings.SaveSetting(QStringLiteral("Startup"), QStringLiteral("Last_Used_Lib"), a.Last_Used_Lib);
    }
    Set_Main_Options(a);
    a.Menu_Refresh_Wanted = true;
}

void mnu_Library_Delete(LibraryContext& c)
{
    AppState& a = c.app;
    defaultDataFolder(a);
    const QString path = File_Dialog(c.ui, 1, QStringLiteral("Delete Library"), QString(), kFilter,
                                     QStringLiteral("*.vkt"), a.Library_Data_Folder, QStringLiteral("vkt"), false);
    if (path.isEmpty() || !path.endsWith(QLatin1String(".vkt")))
        return;
    c.ui.lockMainWindow();
    const QString note = QStringLiteral("NOTE: The Libray folders and tracks will remain untouched.");
    if (path != a.Library_File) {
        const QString name = Get_Path_File(path).chopped(4);
        const QString text = QStringLiteral("Are you sure you want to delete the Library named ") + name
                             + QStringLiteral(" ?") + kCrLf + kCrLf + note;
        if (c.ui.question(text, QStringLiteral("Delete Libray?"), Buttons::YesNo, Icon::Warning, Answer::No)
            == Answer::Yes)
            deleteLibraryFiles(path);
        c.ui.unlockMainWindow();
        return;
    }
    const QString text = QStringLiteral("The Library you want to delete is the current Library.") + kCrLf
                         + QStringLiteral("If you delete this Library, the current library will be closed as well.")
                         + kCrLf + kCrLf + QStringLiteral("Are you sure you want to delete the current library?")
                         + kCrLf + kCrLf + note;
    if (c.ui.question(text, QStringLiteral("Delete current Libray?"), Buttons::YesNo, Icon::Warning, Answer::No)
        == Answer::Yes) {
        deleteLibraryFiles(path);
        c.lib.search.Start_Search_Lists();
        Close_Library(c);
        Set_Main_Options(a);
        a.Menu_Refresh_Wanted = true;
        // No library is left to rip into.
        a.Rip.MP3_Rip_To = false;
        a.options.chkDestLibrary = false;
        a.settings.SaveSetting(QStringLiteral("RipData"), QStringLiteral("MP3_Rip_To"), QStringLiteral("False"));
    }
    c.ui.unlockMainWindow();
}

void Write_Library_File(LibraryContext& c)
{
    AppState& a = c.app;
    // Written beside the old file and put in its place complete, so that a
    // failure never leaves the library without its .vkt file.
    const QString fresh = a.Library_File + QStringLiteral(".new");
    QFile::remove(fresh);
    const IniFile vkt(fresh);
    vkt.write(kGeneral, QStringLiteral("ALBUM_COUNT"), QString::number(c.lib.MP3_List.count()));
    vkt.write(kGeneral, QStringLiteral("ID_COUNT"), QString::number(c.lib.ID_COUNT));
    vkt.write(kGeneral, QStringLiteral("ALBUMLIB_NAME"), a.Trackfile);
    vkt.write(kGeneral, QStringLiteral("FREEID_NAME"), a.IDfile);
    vkt.write(kGeneral, QStringLiteral("LIB_FOLDER"), a.Library_Main_Folder);
    vkt.write(kGeneral, QStringLiteral("BAK_FOLDER"), a.Backup_Folder);
    Write_Rename_Options(c.lib.naming.tables, fresh);
    Write_Relocate_Options(c.lib.naming.tables, fresh);
    if (::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(a.Library_File).constData()) != 0)
        QFile::remove(fresh);
}

}  // namespace sonorit
