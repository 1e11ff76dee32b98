// Creating and deleting libraries and rewriting the .vkt file.
#include <gtest/gtest.h>

#include <QFile>

#include "library/lifecycle.h"
#include "library/naming_rules.h"
#include "shell/settings_families.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(Lifecycle, NewLibraryAsksItsWayThroughAndIsFilledByARefresh)
{
    LibraryFixture f;
    const QString main = f.env.path("Music Here");
    writeTaggedMp3(main + "/x/1.mp3", tags("Abba", "Gold", "1", "One"));
    const QString vkt = f.env.path("Libs/New.vkt");
    QDir().mkpath(f.env.path("Libs"));
    // Save name, the main folder (asked again after a cancel), Yes to a backup
    // folder, a cancel there, No to discarding, then the backup folder.
    f.ui.dialogResults = {vkt, "", main, "", f.env.path("Bak")};
    f.ui.answers = {Answer::Ok, Answer::Yes, Answer::No, Answer::Ok, Answer::No};
    mnu_Library_New(f.ctx);

    EXPECT_EQ(f.ui.titles(), (QStringList{"Info", "Library Backup?", "Library Backup?", "MP3 Scan", "Refresh Report"}));
    EXPECT_EQ(f.ui.messages[0].text, "Please locate or create the Main Folder for this new Library...");
    EXPECT_EQ(f.ui.messages[1].text, "Do you want to locate a Backup folder now?\r\nIf so, please locate that folder.");
    EXPECT_EQ(f.ui.messages[2].text, "No folder was selected!\r\nDiscard Backup folder for now?");
    EXPECT_EQ(f.ui.messages[3].text,
              "On the next step, the selected Library Folder and subfolders will be scanned to collect any mp3 track.");
    ASSERT_EQ(f.ui.fileDialogs.size(), 1u);
    EXPECT_EQ(f.ui.fileDialogs[0].title, "Save New Library As");
    EXPECT_EQ(f.ui.fileDialogs[0].mode, FileDialogMode::Save);
    EXPECT_EQ(f.ui.caption, "ZEV's MP3 Sonorit - New");

    const QString data = f.app.paths.Data_Folder;
    QStringList general;
    for (const char* key : {"ALBUMLIB_NAME", "FREEID_NAME", "LIB_FOLDER", "BAK_FOLDER", "ALBUM_COUNT", "ID_COUNT"})
        general << IniFile(vkt).read("GENERAL", key, "");
    EXPECT_EQ(general, (QStringList{data + "Trackfile000.tri", data + "IDfile000.tri", main + "/",
                                    f.env.path("Bak") + "/", "1", "1"}));
    EXPECT_TRUE(QDir(main + "/Quarantaine").exists());
    EXPECT_EQ(f.lib.MP3_List.count(), 1);
    EXPECT_EQ(f.app.Last_Used_Lib, vkt);
    EXPECT_EQ(f.app.settings.GetSetting("Startup", "Last_Used_Lib", ""), vkt);
    EXPECT_EQ(f.app.settings.GetSetting("Folders", "Album", ""), f.env.path("Libs"));
    EXPECT_TRUE(f.app.Menu_Refresh_Wanted);

    // New over an existing .vkt: it is deleted first, so fresh names are taken
    // and the old Trackfile stays behind.
    f.ui.messages.clear();
    f.ui.dialogResults = {vkt, main};
    f.ui.answers = {Answer::Ok, Answer::No, Answer::Ok, Answer::No};
    mnu_Library_New(f.ctx);
    EXPECT_EQ(IniFile(vkt).read("GENERAL", "ALBUMLIB_NAME", ""), data + "Trackfile001.tri");
    EXPECT_EQ(IniFile(vkt).read("GENERAL", "BAK_FOLDER", "<none>"), "");
    EXPECT_TRUE(QFileInfo::exists(data + "Trackfile000.tri"));
    EXPECT_EQ(readFile(data + "IDfile001.tri"), QByteArray());

    // Cancel at the save dialog: nothing begins.
    f.ui.messages.clear();
    mnu_Library_New(f.ctx);
    EXPECT_TRUE(f.ui.messages.empty());
    EXPECT_FALSE(f.app.libraryOpen());
}

TEST(Lifecycle, DeletingALibraryRemovesItsFilesOnlyAndClosesItIfCurrent)
{
    WorkFixture f;
    f.fill({{"a/1.mp3", tags("A", "Ax", "1", "One")}});

    // Another library: its three files go, the current one stays open.
    const LibraryFiles o = LibraryMaker(f.app.paths, f.env.path("Other.vkt")).write();
    f.ui.messages.clear();
    f.ui.dialogResults = {o.vkt};
    f.ui.answers = {Answer::Yes};
    mnu_Library_Delete(f.ctx);
    ASSERT_EQ(f.ui.titles(), QStringList{"Delete Libray?"});
    EXPECT_EQ(f.ui.messages[0].text, "Are you sure you want to delete the Library named Other ?\r\n\r\n"
                                     "NOTE: The Libray folders and tracks will remain untouched.");
    EXPECT_EQ(f.ui.fileDialogs[0].title, "Delete Library");
    for (const QString& p : {o.vkt, o.trackfile, o.idfile})
        EXPECT_FALSE(QFileInfo::exists(p)) << p.toStdString();
    EXPECT_TRUE(f.app.libraryOpen());
    EXPECT_FALSE(f.ui.locked);

    // The current one: No changes nothing; Yes closes it, its tracks stay.
    f.ui.messages.clear();
    f.ui.dialogResults = {f.files.vkt, f.files.vkt};
    f.ui.answers = {Answer::No, Answer::Yes};
    mnu_Library_Delete(f.ctx);
    EXPECT_TRUE(QFileInfo::exists(f.files.vkt));
    EXPECT_EQ(f.lib.MP3_List.count(), 1);
    mnu_Library_Delete(f.ctx);
    ASSERT_EQ(f.ui.titles(), (QStringList{"Delete current Libray?", "Delete current Libray?"}));
    EXPECT_EQ(f.ui.messages[1].text,
              "The Library you want to delete is the current Library.\r\n"
              "If you delete this Library, the current library will be closed as well.\r\n\r\n"
              "Are you sure you want to delete the current library?\r\n\r\n"
              "NOTE: The Libray folders and tracks will remain untouched.");
    for (const QString& p : {f.files.vkt, f.files.trackfile, f.files.idfile})
        EXPECT_FALSE(QFileInfo::exists(p)) << p.toStdString();
    EXPECT_TRUE(QFileInfo::exists(f.main + "a/1.mp3"));
    EXPECT_TRUE(f.lib.MP3_List.isEmpty());
    EXPECT_FALSE(f.app.libraryOpen());
    EXPECT_TRUE(f.app.Library_Main_Folder.isEmpty());
    EXPECT_EQ(f.ui.caption, "ZEV's MP3 Sonorit");
    EXPECT_EQ(f.app.settings.GetSetting("RipData", "MP3_Rip_To", ""), "False");
    EXPECT_TRUE(f.lib.search.Search_Artists.names().isEmpty());
}

TEST(Lifecycle, WriteLibraryFileRewritesGeneralAndDetails)
{
    WorkFixture f;
    f.lib.naming.tables.separators[0] = 2;
    f.lib.naming.tables.prefix = false;
    f.app.Backup_Folder = "/backup/";
    Write_Library_File(f.ctx);
    const QByteArray vkt = readFile(f.files.vkt);
    EXPECT_TRUE(vkt.startsWith("[GENERAL]\nALBUM_COUNT=0\nID_COUNT=0\nALBUMLIB_NAME=" + f.files.trackfile.toUtf8()
                               + "\nFREEID_NAME=" + f.files.idfile.toUtf8() + "\nLIB_FOLDER=" + f.main.toUtf8()
                               + "\nBAK_FOLDER=/backup/\n[DETAILS]\nDETAIL_A1=Artist\n"))
        << vkt.toStdString();
    NamingState n;
    Read_Transfer_Save_Naming_Rules(n, f.files.vkt);
    EXPECT_TRUE(n.tables == f.lib.naming.tables);
    EXPECT_FALSE(QFileInfo::exists(f.files.vkt + ".new"));
}
