// Small rules of the shell: path and text helpers, which menu entries are
// enabled, what runs on which timer tick, and the desktop integration files.
#include <gtest/gtest.h>

#include <QDir>
#include <sys/stat.h>

#include "shell/file_type.h"
#include "shell/helpers.h"
#include "shell/main_timer.h"
#include "shell/menus.h"
#include "shell/startup.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(Helpers, PathsTextsAndNumbers)
{
    struct Path {
        const char *in, *folder, *file;
    };
    const Path paths[] = {
        {"/", "", ""},
        {"/a.mp3", "", "a.mp3"},
        {"/music/a/b.mp3", "/music/a", "b.mp3"},
        {"b.mp3", "", "b.mp3"},
        {"/music/a/", "/music/a", ""},
    };
    for (const Path& p : paths) {
        EXPECT_EQ(Get_Path_Folder(QLatin1String(p.in)), QLatin1String(p.folder)) << p.in;
        EXPECT_EQ(Get_Path_File(QLatin1String(p.in)), QLatin1String(p.file)) << p.in;
    }
    EXPECT_EQ(Add_Backslash(QString()), QStringLiteral("/"));
    EXPECT_EQ(Add_Backslash(QStringLiteral("/m")), QStringLiteral("/m/"));
    EXPECT_EQ(Add_Backslash(QStringLiteral("/m/")), QStringLiteral("/m/"));

    EXPECT_EQ(Clean_File_Name(QStringLiteral("a?b/c")), QStringLiteral("ab_c"));
    EXPECT_EQ(Clean_File_Name(QStringLiteral("\\*<>|:\"?x")), QStringLiteral("_______x"));
    EXPECT_EQ(Clean_File_Name(QString()), QString());

    const std::pair<long long, const char*> seconds[] = {
        {3661, "01:01:01"}, {61, "01:01"}, {0, "00:00"}, {3600, "01:00:00"}, {59, "00:59"}, {36000, "10:00:00"}};
    for (const auto& [n, text] : seconds)
        EXPECT_EQ(Format_Seconds(n), QLatin1String(text)) << n;
    EXPECT_EQ(Format_Seconds_Short(3661), QStringLiteral("01:01"));

    EXPECT_EQ(Join_Dialog_Selection({QStringLiteral("/m/a.mp3")}), QStringLiteral("/m/a.mp3"));
    EXPECT_EQ(Join_Dialog_Selection({QStringLiteral("/m/a.mp3"), QStringLiteral("/m/b.mp3")}),
              QStringLiteral("/m|a.mp3|b.mp3"));
    EXPECT_EQ(Join_Dialog_Selection({}), QString());

    const std::pair<const char*, long long> numbers[] = {
        {"12", 12}, {"  7", 7}, {"-3", -3}, {"+4", 4}, {"12abc", 12}, {"abc", 0}, {"", 0}, {"3.9", 3}};
    for (const auto& [text, n] : numbers)
        EXPECT_EQ(Val(QLatin1String(text)), n) << text;

    TempEnv env;
    writeFile(env.path(QStringLiteral("f")), "x");
    EXPECT_TRUE(File_Exists(env.path(QStringLiteral("f"))));
    EXPECT_TRUE(File_Exists(env.root()));  // a folder counts
    EXPECT_FALSE(File_Exists(env.path(QStringLiteral("g"))));
    EXPECT_FALSE(File_Exists(QString()));

    // Optical drives by their device names; none gives an empty drive list.
    QDir().mkpath(env.path(QStringLiteral("dev")));
    EXPECT_EQ(Find_CD_Drives(env.path(QStringLiteral("dev"))), QStringList());
    for (const char* name : {"sr1", "sda", "sr0"})
        writeFile(env.path(QStringLiteral("dev/")) + QLatin1String(name), "");
    EXPECT_EQ(Find_CD_Drives(env.path(QStringLiteral("dev"))),
              (QStringList{QStringLiteral("Audio CD Drive ") + env.path(QStringLiteral("dev/sr0")),
                           QStringLiteral("Audio CD Drive ") + env.path(QStringLiteral("dev/sr1"))}));
}

TEST(Menus, EnabledByLibraryBackupPlaylistAndRip)
{
    const QStringList always = {"mnu_Library_New", "mnu_Library_Open", "mnu_Library_Delete", "mnu_Library_Exit",
                                "mnu_PlayList_Open", "mnu_Extra_Options", "mnu_Extra_Filename_Tag"};
    const QStringList withLibrary = {"mnu_Library_Move", "mnu_Library_Refresh", "mnu_Library_Sort",
                                     "mnu_Library_Backup", "mnu_Library_Print", "mnu_Library_Add",
                                     "mnu_Library_Remove", "mnu_Tracks_Copy", "mnu_Tracks_Delete",
                                     "mnu_Library_Relocate", "mnu_Library_Rename", "mnu_Extra_Search", "mnu_play",
                                     "mnu_add"};
    const QStringList withPlaylist = {"mnu_PlayList_Save", "mnu_PlayList_Save_As", "mnu_PlayList_Export",
                                      "mnu_Track_Delete", "mnu_PlayList_Clear"};
    struct Row {
        MenuInputs in;
        bool library, restore, playlist, cdPlayer;
    };
    const Row rows[] = {
        {{false, false, 0, false}, false, false, false, false},
        {{false, true, 3, true}, false, false, true, true},  // a backup folder alone enables nothing
        {{true, false, 0, false}, true, false, false, false},
        {{true, true, 1, false}, true, true, true, false},
    };
    for (const Row& r : rows) {
        const MenuStates m = Update_Menus(r.in);
        const QString at = QStringLiteral("library %1 backup %2 playlist %3 rip %4")
                               .arg(r.in.libraryOpen).arg(r.in.backupFolderSet).arg(r.in.playlistCount)
                               .arg(r.in.ripEnabled);
        for (const QString& name : always)
            EXPECT_TRUE(m.isEnabled(name)) << qPrintable(name) << " " << qPrintable(at);
        for (const QString& name : withLibrary)
            EXPECT_EQ(m.isEnabled(name), r.library) << qPrintable(name) << " " << qPrintable(at);
        for (const QString& name : withPlaylist)
            EXPECT_EQ(m.isEnabled(name), r.playlist) << qPrintable(name) << " " << qPrintable(at);
        EXPECT_EQ(m.isEnabled(QStringLiteral("mnu_Library_Restore")), r.restore) << qPrintable(at);
        EXPECT_EQ(m.isEnabled(QStringLiteral("mnu_Extra_CD_Player")), r.cdPlayer) << qPrintable(at);
        EXPECT_EQ(m.chkDestLibraryEnabled, r.library);
        EXPECT_EQ(m.clearChkDestLibrary, !r.library);
    }
}

TEST(MainTimer, RunsEachJobOnItsTicks)
{
    QString trace;
    const MainTimerWork work{[&] { trace += QLatin1Char('c'); }, [&] { trace += QLatin1Char('m'); },
                             [&] { trace += QLatin1Char('U'); }, [&] { trace += QLatin1Char('P'); },
                             [&] { trace += QLatin1Char('D'); }};
    MainTimer timer;
    bool menus = true;
    QStringList perTick;
    for (int n = 0; n < 20; ++n) {
        trace.clear();
        timer.tick(work, menus, /*cdPollFlag=*/n < 10);
        perTick << QString::number(timer.Timer_Tick()) + QLatin1Char(':') + trace;
    }
    EXPECT_EQ(perTick.join(QLatin1Char(' ')),
              QStringLiteral("1:cmU 2:cmD 3:cm 4:cm 5:cmP 6:cm 7:cmD 8:cm 9:cm 0:cmP "
                             "1:cm 2:cm 3:cm 4:cm 5:cmP 6:cm 7:cm 8:cm 9:cm 0:cmP"));
    EXPECT_FALSE(menus);
    EXPECT_EQ(MainTimer::kIntervalMs, 200);
}

TEST(FileType, DesktopFilesAreWrittenOnlyWhenTheyDiffer)
{
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");  // no update-mime-database writing behind the test's back
    TempEnv env;
    const QString mime = env.path(QStringLiteral(".local/share/mime/packages/zevsonorit-library.xml"));
    const QString desktop = env.path(QStringLiteral(".local/share/applications/zevsonorit.desktop"));
    const QString list = env.path(QStringLiteral(".config/mimeapps.list"));
    auto inode = [](const QString& path) {
        struct stat st {};
        return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_ino : ino_t(0);
    };
    QDir().mkpath(env.path(QStringLiteral(".config")));
    writeFile(list, "[Default Applications]\ntext/plain=editor.desktop\n\n[Added Associations]\nimage/png=v.desktop\n");

    Register_File_Type(QStringLiteral("ZEV's MP3 Sonorit Library Files"), QStringLiteral("/opt/z s/sonorit"));
    Associate_Extension(QStringLiteral(".vkt"), QStringLiteral("ZEV's MP3 Sonorit Library File"));
    const QByteArray entry = readFile(desktop);
    EXPECT_TRUE(entry.contains("\nExec=\"/opt/z s/sonorit\" %f\n")) << entry.constData();
    EXPECT_TRUE(entry.contains("\nMimeType=application/x-zevsonorit-library;\n"));
    EXPECT_TRUE(readFile(mime).contains("<glob pattern=\"*.vkt\"/>"));
    EXPECT_EQ(readFile(list).toStdString(), "[Default Applications]\ntext/plain=editor.desktop\n"
                                            "application/x-zevsonorit-library=zevsonorit.desktop\n\n"
                                            "[Added Associations]\nimage/png=v.desktop\n");

    const ino_t before[] = {inode(mime), inode(desktop), inode(list)};
    Register_File_Type(QStringLiteral("ZEV's MP3 Sonorit Library Files"), QStringLiteral("/opt/z s/sonorit"));
    Associate_Extension(QStringLiteral(".vkt"), QStringLiteral("ZEV's MP3 Sonorit Library File"));
    EXPECT_EQ(inode(mime), before[0]);
    EXPECT_EQ(inode(desktop), before[1]);
    EXPECT_EQ(inode(list), before[2]);

    // Another program path is a difference: the desktop entry alone is rewritten.
    Register_File_Type(QStringLiteral("ZEV's MP3 Sonorit Library Files"), QStringLiteral("/usr/bin/sonorit"));
    EXPECT_EQ(inode(mime), before[0]);
    EXPECT_NE(inode(desktop), before[1]);
    EXPECT_TRUE(readFile(desktop).contains("\nExec=\"/usr/bin/sonorit\" %f\n"));
    qputenv("PATH", oldPath);
}
