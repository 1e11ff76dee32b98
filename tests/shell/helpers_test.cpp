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
    const std::pair<QString, const char*> results[] = {
        {Get_Path_Folder("/music/a/b.mp3"), "/music/a"}, {Get_Path_File("/music/a/b.mp3"), "b.mp3"},
        {Get_Path_Folder("/music/a/"), "/music/a"}, {Get_Path_File("/music/a/"), ""},
        {Get_Path_Folder("/a.mp3"), ""}, {Get_Path_Folder("b.mp3"), ""}, {Get_Path_File("b.mp3"), "b.mp3"},
        {Add_Backslash(""), "/"}, {Add_Backslash("/m"), "/m/"}, {Add_Backslash("/m/"), "/m/"},
        {Clean_File_Name("a?b/c"), "ab_c"}, {Clean_File_Name("\\*<>|:\"?x"), "_______x"},
        {Format_Seconds(3661), "01:01:01"}, {Format_Seconds(59), "00:59"}, {Format_Seconds(3600), "01:00:00"},
        {Format_Seconds_Short(3661), "01:01"}, {Join_Dialog_Selection({"/m/a.mp3"}), "/m/a.mp3"},
        {Join_Dialog_Selection({"/m/a.mp3", "/m/b.mp3"}), "/m|a.mp3|b.mp3"}, {Join_Dialog_Selection({}), ""},
    };
    for (size_t i = 0; i < std::size(results); ++i)
        EXPECT_EQ(results[i].first, results[i].second) << "case " << i;
    const std::pair<const char*, long long> numbers[] = {
        {"  7", 7}, {"-3", -3}, {"+4", 4}, {"12abc", 12}, {"abc", 0}, {"3.9", 3}};
    for (const auto& [text, n] : numbers)
        EXPECT_EQ(Val(text), n) << text;

    TempEnv env;
    writeFile(env.path("f"), "x");
    EXPECT_TRUE(File_Exists(env.path("f")) && File_Exists(env.root()));  // a folder counts
    EXPECT_FALSE(File_Exists(env.path("g")) || File_Exists(""));
    // Optical drives by their device names; none gives an empty drive list.
    QDir().mkpath(env.path("dev"));
    EXPECT_EQ(Find_CD_Drives(env.path("dev")), QStringList());
    for (const char* name : {"sr1", "sda", "sr0"})
        writeFile(env.path("dev/") + name, "");
    EXPECT_EQ(Find_CD_Drives(env.path("dev")),
              (QStringList{"Audio CD Drive " + env.path("dev/sr0"), "Audio CD Drive " + env.path("dev/sr1")}));
}

TEST(Menus, EnabledByLibraryBackupPlaylistAndRip)
{
    const QStringList always = {"mnu_Library_New", "mnu_Library_Open", "mnu_Library_Delete", "mnu_Library_Exit",
                                "mnu_PlayList_Open", "mnu_Extra_Options", "mnu_Extra_Filename_Tag"};
    const QStringList withLibrary = {
        "mnu_Library_Move", "mnu_Library_Refresh", "mnu_Library_Sort", "mnu_Library_Backup", "mnu_Library_Print",
        "mnu_Library_Add", "mnu_Library_Remove", "mnu_Tracks_Copy", "mnu_Tracks_Delete", "mnu_Library_Relocate",
        "mnu_Library_Rename", "mnu_Extra_Search", "mnu_play", "mnu_add", "mnu_Retag", "mnu_Retag_All", "mnu_Retag_Tree",
        "mnu_Tag_sel_Genre", "mnu_Tag_sel_Cover"};
    const QStringList withPlaylist = {"mnu_PlayList_Save", "mnu_PlayList_Save_As", "mnu_PlayList_Export",
                                      "mnu_Track_Delete", "mnu_PlayList_Clear"};
    const struct {
        MenuInputs in;
        bool library, restore, playlist, cdPlayer;
    } rows[] = {
        {{false, false, 0, false}, false, false, false, false},
        {{false, true, 3, true}, false, false, true, true},  // a backup folder alone enables nothing
        {{true, false, 0, false}, true, false, false, false},
        {{true, true, 1, false}, true, true, true, false},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::Message() << "library " << r.in.libraryOpen << " backup " << r.in.backupFolderSet
                                        << " playlist " << r.in.playlistCount << " rip " << r.in.ripEnabled);
        const MenuStates m = Update_Menus(r.in);
        for (const QString& name : always + withLibrary + withPlaylist)
            EXPECT_EQ(m.isEnabled(name), always.contains(name) || (withLibrary.contains(name) ? r.library : r.playlist))
                << name.toStdString();
        EXPECT_EQ(m.isEnabled("mnu_Library_Restore"), r.restore);
        EXPECT_EQ(m.isEnabled("mnu_Extra_CD_Player"), r.cdPlayer);
        EXPECT_EQ(m.chkDestLibraryEnabled, r.library);
        EXPECT_EQ(m.clearChkDestLibrary, !r.library);
    }
}

TEST(MainTimer, RunsEachJobOnItsTicks)
{
    QString trace;
    const MainTimerWork work{[&] { trace += 'c'; }, [&] { trace += 'm'; }, [&] { trace += 'U'; },
                             [&] { trace += 'P'; }, [&] { trace += 'D'; }};
    MainTimer timer;
    bool menus = true;
    for (int n = 0; n < 20; ++n) {
        trace += QString(" %1:").arg((n + 1) % 10);
        timer.tick(work, menus, /*cdPollFlag=*/n < 10);
        EXPECT_EQ(timer.Timer_Tick(), (n + 1) % 10);
    }
    EXPECT_EQ(trace, " 1:cmU 2:cmD 3:cm 4:cm 5:cmP 6:cm 7:cmD 8:cm 9:cm 0:cmP"
                     " 1:cm 2:cm 3:cm 4:cm 5:cmP 6:cm 7:cm 8:cm 9:cm 0:cmP");
    EXPECT_FALSE(menus);
}

TEST(FileType, DesktopFilesAreWrittenOnlyWhenTheyDiffer)
{
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");  // no update-mime-database writing behind the test's back
    TempEnv env;
    const QString mime = env.path(".local/share/mime/packages/zevsonorit-library.xml"),
                  desktop = env.path(".local/share/applications/zevsonorit.desktop"),
                  list = env.path(".config/mimeapps.list");
    const auto inodes = [&] {
        std::vector<ino_t> out;
        for (const QString& path : {mime, desktop, list}) {
            struct stat st {};
            out.push_back(::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_ino : ino_t(0));
        }
        return out;
    };
    const auto registerAs = [](const char* program) {
        Register_File_Type("ZEV's MP3 Sonorit Library Files", program);
        Associate_Extension(".vkt", "ZEV's MP3 Sonorit Library File");
    };
    writeFile(list, "[Default Applications]\ntext/plain=editor.desktop\n\n[Added Associations]\nimage/png=v.desktop\n");
    registerAs("/opt/z s/sonorit");
    EXPECT_TRUE(readFile(desktop).contains("\nExec=\"/opt/z s/sonorit\" %f\n")) << readFile(desktop).constData();
    EXPECT_TRUE(readFile(desktop).contains("\nMimeType=application/x-zevsonorit-library;\n"));
    EXPECT_TRUE(readFile(desktop).contains("\nIcon=zevsonorit\n"));
    EXPECT_TRUE(readFile(mime).contains("<glob pattern=\"*.vkt\"/>"));
    EXPECT_EQ(readFile(list), "[Default Applications]\ntext/plain=editor.desktop\napplication/x-zevsonorit-library="
                              "zevsonorit.desktop\n\n[Added Associations]\nimage/png=v.desktop\n");

    const std::vector<ino_t> before = inodes();
    registerAs("/opt/z s/sonorit");
    EXPECT_EQ(inodes(), before);
    registerAs("/usr/bin/sonorit");  // another program path: the desktop entry alone is rewritten
    EXPECT_EQ(inodes(), (std::vector<ino_t>{before[0], inodes()[1], before[2]}));
    EXPECT_NE(inodes()[1], before[1]);
    EXPECT_TRUE(readFile(desktop).contains("\nExec=\"/usr/bin/sonorit\" %f\n"));
    qputenv("PATH", oldPath);
}
