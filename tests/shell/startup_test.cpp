// Start-up: the order of its steps as the session log shows it, the settings
// it leaves behind, the command line, and the refusal of a second instance.
#include <gtest/gtest.h>

#include <QDir>

#include "library/open_library.h"
#include "shell/session_log.h"
#include "shell/single_instance.h"
#include "shell/startup.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/startup_log.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct Host : StartupHost {
    explicit Host(LibraryContext* l = nullptr) : lib(l) {}
    LibraryContext* lib;
    QStringList calls;
    void checkOpenLibraryFile(const QString& path) override
    {
        calls << "open " + path;
        Check_Open_Library_File(*lib, path);
    }
    bool wmaAvailable() override { return false; }
    void hideWmaEntries() override { calls << "hide WMA"; }
    void enableTimer() override { calls << "timer"; }
};

// One start of the program in a private home. update-mime-database and
// friends are left out: they would write into it after the test removed it.
struct Start {
    const QByteArray path = qgetenv("PATH");
    TempEnv env;
    AppState app{env.paths()};
    LibraryState lib;
    ScriptedUi ui;
    LibraryContext ctx{app, lib, ui};
    Host host{&ctx};
    SingleInstance instance;
    SessionLog log;

    Start() { qputenv("PATH", "/nonexistent"); }
    ~Start() { qputenv("PATH", path); }
    StartupResult run(const QString& commandLine = QString())
    {
        return Run_Startup(app, ui, host, instance, log, commandLine, env.path("bin/sonorit"));
    }
    // Settings named "Group/Key".
    QString setting(const QString& name) const { return app.settings.GetSetting(group(name), key(name), "<none>"); }
    void preset(const QString& name, const QString& v) { app.settings.SaveSetting(group(name), key(name), v); }
    static QString group(const QString& name) { return name.section('/', 0, 0); }
    static QString key(const QString& name) { return name.section('/', 1); }
};

}  // namespace

TEST(Startup, LogsEveryStepLeavesEveryKeyAndRefusesASecondInstance)
{
    Start s;
    writeFile(s.app.paths.Data_Folder + "Sonorit.log", "previous session\n");
    ASSERT_EQ(s.run(), StartupResult::Started);
    EXPECT_EQ(sessionLog(s.app.paths.Data_Folder), startupLogLines(s.app.paths.Music_Folder, QString(), false));
    EXPECT_EQ(s.host.calls, (QStringList{"hide WMA", "timer"}));
    EXPECT_FALSE(s.log.isOpen());
    EXPECT_TRUE(s.app.Menu_Refresh_Wanted);
    EXPECT_EQ(s.ui.caption, "ZEV's MP3 Sonorit");
    EXPECT_EQ(s.app.Library_Main_Folder, s.app.paths.Music_Folder + '/');
    EXPECT_TRUE(s.ui.messages.empty());

    // The families Main, Startup, Rip and Tag stand in the store with their
    // defaults; without a library MP3_Rip_To is False.
    const QString data = s.app.paths.Data_Folder;
    const std::pair<const char*, QString> keys[] = {
        {"Folders/Art", s.app.paths.Pictures_Folder}, {"Import/Mode", "0"}, {"Startup/Last_Used_Lib", ""},
        {"RipData/MP3_VBR", "True"}, {"RipData/MP3_Rip_To", "False"}, {"RipData/WAV_Rip_To_Folder", data},
        {"TagData/TAG_READ_OTHER", "False"}, {"TagData/TAG_03", "True"}, {"TagData/TAG_05", "<none>"},
        {"TagData/TAG_11", "False"}, {"TagData/TAG_13", "True"}};
    for (const auto& [name, value] : keys)
        EXPECT_EQ(s.setting(name), value) << name;

    // A second instance stops before it touches a file.
    const QByteArray log = readFile(data + "Sonorit.log");
    ScriptedUi ui;
    Host host;
    SingleInstance second;
    SessionLog secondLog;
    AppState app(s.app.paths);
    EXPECT_EQ(Run_Startup(app, ui, host, second, secondLog, QString(), QString()), StartupResult::AlreadyRunning);
    ASSERT_EQ(ui.titles(), QStringList{""});
    EXPECT_EQ(ui.messages[0].text, "ZEV's MP3 Sonorit already running");
    EXPECT_EQ(ui.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(readFile(data + "Sonorit.log"), log);
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST(Startup, StoredValuesThatMustNotActAndValuesThatStopIt)
{
    {   // Startup/Option is written but never read back; TAG_05 and the
        // switches 0, 1, 2 are forced on whatever stands in the store.
        Start s;
        const LibraryFiles f = LibraryMaker(s.app.paths, s.env.path("Fav.vkt")).write();
        for (const auto& [name, value] : {std::pair{"Startup/Option", "2"}, {"TagData/TAG_05", "banana"},
                                          {"TagData/TAG_00", "False"}, {"TagData/TAG_12", "True"}})
            s.preset(name, value);
        s.preset("Startup/Specific_Lib", f.vkt);
        ASSERT_EQ(s.run(), StartupResult::Started);
        EXPECT_TRUE(s.app.Library_File.isEmpty());
        EXPECT_EQ(s.setting("Startup/Option"), "0");
        EXPECT_EQ(s.setting("Startup/Specific_Lib"), f.vkt);
        EXPECT_EQ(s.app.options.specificLibName, "Fav.vkt");
        EXPECT_EQ(s.setting("TagData/TAG_05"), "banana");
        for (int i : {0, 1, 2, 5, 12})
            EXPECT_TRUE(s.app.Tag_Options[i]) << i;
        EXPECT_FALSE(s.app.Tag_Options[11]);
    }
    {   // A specific library whose file is gone is forgotten.
        Start s;
        s.preset("Startup/Specific_Lib", s.env.path("gone.vkt"));
        ASSERT_EQ(s.run(), StartupResult::Started);
        EXPECT_EQ(s.setting("Startup/Specific_Lib"), "");
    }
    for (const auto& [name, value] : {std::pair{"Import/Mode", "copy"}, {"RipData/MP3_Bitrate", "8a"},
                                      {"RipData/WMA_Format", "40000"}, {"RipData/MP3_VBR", "perhaps"},
                                      {"TagData/TAG_03", "ja"}}) {
        SCOPED_TRACE(name);
        Start s;
        s.preset(name, value);
        EXPECT_EQ(s.run(), StartupResult::BadSetting);
        ASSERT_EQ(s.ui.messages.size(), 1u);
        const QString text = s.ui.messages[0].text;
        EXPECT_TRUE(text.contains(Start::key(name)) && text.contains('"' + QString(value) + '"')) << text.toStdString();
        EXPECT_FALSE(s.host.calls.contains("timer"));
        EXPECT_FALSE(s.log.isOpen());
    }
}

TEST(Startup, CommandLine)
{
    TempEnv env;
    for (const char* name : {"x.vkt", "ab.vkt", "Lib.vkt", "LIB.VKT", "notes.txt"})
        writeFile(env.path(name), "[GENERAL]\n");
    const QString oldCwd = QDir::currentPath();
    QDir::setCurrent(env.root());
    const QString lib = env.path("Lib.vkt");
    const std::pair<QString, QString> rows[] = {
        {"x.vkt", ""}, {"\"ab.vkt\"", ""}, {"./x.vkt", ""},  // 7 characters or fewer without quotes: ignored
        {"./Lib.vkt", lib},                                   // kept as an absolute path
        {lib, lib}, {'"' + lib + '"', lib}, {'"' + env.path("LIB.VKT") + '"', env.path("LIB.VKT")},
        {env.path("notes.txt"), ""}, {env.path("missing.vkt"), ""},
    };
    for (const auto& [commandLine, expected] : rows)
        EXPECT_EQ(Command_Line_Library(commandLine), expected) << commandLine.toStdString();
    EXPECT_EQ(Join_Command_Line({"/a b/c.vkt", "x"}), "/a b/c.vkt x");
    QDir::setCurrent(oldCwd);

    // An upper-case extension passes the command line but not the exact check
    // of the open: no library, no message, and Last_Used_Lib becomes "". A
    // proper one opens right after "Inspecting CommandLine" and keeps MP3_Rip_To.
    for (const char* name : {"MUSIC.VKT", "Music.vkt"}) {
        SCOPED_TRACE(name);
        Start s;
        const QString path = s.env.path(name);
        const bool opens = path.endsWith(".vkt");
        LibraryMaker(s.app.paths, path).track(makeTrack("A", "T", "/m", "t.mp3")).write();
        s.preset("Startup/Last_Used_Lib", "/old.vkt");
        s.preset("RipData/MP3_Rip_To", "True");
        ASSERT_EQ(s.run('"' + path + '"'), StartupResult::Started);
        EXPECT_EQ(s.app.Library_File, opens ? path : "");
        EXPECT_EQ(s.lib.MP3_List.count(), opens ? 1 : 0);
        EXPECT_TRUE(s.ui.messages.empty());
        EXPECT_EQ(s.setting("Startup/Last_Used_Lib"), opens ? path : "");
        EXPECT_EQ(s.setting("RipData/MP3_Rip_To"), opens ? "True" : "False");
        EXPECT_EQ(sessionLog(s.app.paths.Data_Folder), startupLogLines(s.app.paths.Music_Folder, path, false));
    }
}
