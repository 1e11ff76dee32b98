// Start-up: the order of its steps as the session log shows it, the settings
// it leaves behind, the command line, and the refusal of a second instance.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>

#include "library/open_library.h"
#include "shell/session_log.h"
#include "shell/single_instance.h"
#include "shell/startup.h"
#include "tests/support/library_maker.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct Host : StartupHost {
    LibraryContext* lib = nullptr;
    bool wma = false;
    QStringList calls;
    void checkOpenLibraryFile(const QString& path) override
    {
        calls << QStringLiteral("open ") + path;
        Check_Open_Library_File(*lib, path);
    }
    bool wmaAvailable() override { return wma; }
    void hideWmaEntries() override { calls << QStringLiteral("hide WMA"); }
    void enableTimer() override { calls << QStringLiteral("timer"); }
};

// update-mime-database and friends are left out: they would write into the
// private home after the test has removed it.
struct NoDesktopTools {
    QByteArray path = qgetenv("PATH");
    NoDesktopTools() { qputenv("PATH", "/nonexistent"); }
    ~NoDesktopTools() { qputenv("PATH", path); }
};

// One start of the program in a private home.
struct Start {
    NoDesktopTools noTools;
    TempEnv env;
    AppState app{env.paths()};
    LibraryState lib;
    ScriptedUi ui;
    LibraryContext ctx{app, lib, ui};
    Host host;
    SingleInstance instance;
    SessionLog log;

    Start() { host.lib = &ctx; }
    StartupResult run(const QString& commandLine = QString())
    {
        return Run_Startup(app, ui, host, instance, log, commandLine, env.path(QStringLiteral("bin/sonorit")));
    }
    QStringList logLines() const
    {
        return QString::fromUtf8(readFile(app.paths.Data_Folder + QStringLiteral("Sonorit.log")))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    QString setting(const char* section, const char* key) const
    {
        return app.settings.GetSetting(QLatin1String(section), QLatin1String(key), QStringLiteral("<none>"));
    }
    void presetSetting(const char* section, const char* key, const QString& value)
    {
        app.settings.SaveSetting(QLatin1String(section), QLatin1String(key), value);
    }
};

}  // namespace

TEST(Startup, LogsEveryStepInOrderAndLeavesEveryKeyInTheStore)
{
    Start s;
    writeFile(s.app.paths.Data_Folder + QStringLiteral("Sonorit.log"), "previous session\n");
    ASSERT_EQ(s.run(), StartupResult::Started);

    const QString music = s.app.paths.Music_Folder;
    const QStringList expected = {
        QStringLiteral("Initiating VKT filetype"),
        QStringLiteral("Associating extension 'vkt' with ZEV's MP3 Sonorit"),
        QStringLiteral("Initiating start-up variables"),
        QStringLiteral("Initiating combo's and array's"),
        QStringLiteral("Initiating Audio CD drivelist"),
        QStringLiteral("Getting Library data folder"),
        QStringLiteral("Library data folder is set to ") + music,
        QStringLiteral("Getting Playlist data folder"),
        QStringLiteral("Playlist data folder is set to ") + music,
        QStringLiteral("Setting default Library folder"),
        QStringLiteral("Clearing backup folder"),
        QStringLiteral("Setting default rename and relocate options to 'Options' window"),
        QStringLiteral("Getting startup library options"),
        QStringLiteral("Inspecting CommandLine"),
        QStringLiteral("Get Rip settings"),
        QStringLiteral("Set Rip settings to 'Options' window"),
        QStringLiteral("Save Rip settings"),
        QStringLiteral("WMA not available"),
        QStringLiteral("Transferring Main Info to 'Options' window"),
        QStringLiteral("Transferring Tag settings to 'Options' window"),
        QStringLiteral("Setting up available 'Menu' functions"),
        QStringLiteral("Enabling timer events"),
    };
    const QStringList lines = s.logLines();
    ASSERT_EQ(lines.size(), expected.size() + 1);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^Program Start at \\d\\d:\\d\\d:\\d\\d on \\S+$"))
                    .match(lines[0]).hasMatch()) << lines[0].toStdString();
    EXPECT_EQ(lines.mid(1), expected);
    EXPECT_EQ(s.host.calls, (QStringList{QStringLiteral("hide WMA"), QStringLiteral("timer")}));
    EXPECT_FALSE(s.log.isOpen());
    EXPECT_TRUE(s.app.Menu_Refresh_Wanted);
    EXPECT_FALSE(s.app.Options_Loading);
    EXPECT_EQ(s.ui.caption, QStringLiteral("ZEV's MP3 Sonorit"));
    EXPECT_EQ(s.app.Library_Main_Folder, music + QLatin1Char('/'));
    EXPECT_FALSE(s.app.options.ripAsWmaVisible);
    EXPECT_TRUE(s.ui.messages.empty());

    // The families Main, Startup, Rip and Tag stand in the store with their
    // defaults; without a library MP3_Rip_To is False.
    const QString data = s.app.paths.Data_Folder;
    struct Key {
        const char *section, *key;
        QString value;
    };
    const Key keys[] = {
        {"Folders", "Art", s.app.paths.Pictures_Folder}, {"Import", "Mode", QStringLiteral("0")},
        {"Startup", "Option", QStringLiteral("0")}, {"Startup", "Last_Used_Lib", QString()},
        {"Startup", "Specific_Lib", QString()}, {"RipData", "Rip_As", QStringLiteral("0")},
        {"RipData", "MP3_Bitrate", QStringLiteral("8")}, {"RipData", "MP3_VBR", QStringLiteral("True")},
        {"RipData", "MP3_VBR_Quality", QStringLiteral("0")}, {"RipData", "MP3_Max_VBR", QStringLiteral("8")},
        {"RipData", "MP3_Rip_To", QStringLiteral("False")}, {"RipData", "MP3_Rip_To_Folder", data},
        {"RipData", "WAV_Bitrate", QStringLiteral("0")}, {"RipData", "WAV_Samples", QStringLiteral("1")},
        {"RipData", "WAV_Channels", QStringLiteral("0")}, {"RipData", "WAV_Rip_To_Folder", data},
        {"RipData", "WMA_Codecs", QStringLiteral("0")}, {"RipData", "WMA_Format", QStringLiteral("0")},
        {"RipData", "WMA_Rip_To_Folder", data},
    };
    for (const Key& k : keys)
        EXPECT_EQ(s.setting(k.section, k.key), k.value) << k.section << "/" << k.key;
    for (int i = 3; i <= 13; ++i) {
        const char* expectedValue = i == 5 ? "<none>" : (i == 11 || i == 12) ? "False" : "True";
        EXPECT_EQ(s.setting("TagData", qPrintable(QStringLiteral("TAG_%1").arg(i, 2, 10, QLatin1Char('0')))),
                  QLatin1String(expectedValue)) << i;
    }
}

TEST(Startup, StoredValuesThatMustNotActAndValuesThatStopIt)
{
    {   // Startup/Option is written but never read back; TAG_05 and the
        // switches 0, 1, 2 are forced on whatever stands in the store.
        Start s;
        const LibraryFiles f = LibraryMaker(s.app.paths, s.env.path(QStringLiteral("Fav.vkt"))).write();
        s.presetSetting("Startup", "Option", QStringLiteral("2"));
        s.presetSetting("Startup", "Specific_Lib", f.vkt);
        s.presetSetting("TagData", "TAG_05", QStringLiteral("banana"));
        s.presetSetting("TagData", "TAG_00", QStringLiteral("False"));
        s.presetSetting("TagData", "TAG_12", QStringLiteral("True"));
        s.presetSetting("RipData", "MP3_Rip_To", QStringLiteral("True"));
        ASSERT_EQ(s.run(), StartupResult::Started);
        EXPECT_TRUE(s.app.Library_File.isEmpty());
        EXPECT_EQ(s.setting("Startup", "Option"), QStringLiteral("0"));
        EXPECT_EQ(s.setting("Startup", "Specific_Lib"), f.vkt);
        EXPECT_EQ(s.app.options.specificLibName, QStringLiteral("Fav.vkt"));
        EXPECT_EQ(s.setting("TagData", "TAG_05"), QStringLiteral("banana"));
        EXPECT_EQ(s.setting("RipData", "MP3_Rip_To"), QStringLiteral("False"));
        for (int i : {0, 1, 2, 5, 12})
            EXPECT_TRUE(s.app.Tag_Options[i]) << i;
        EXPECT_FALSE(s.app.Tag_Options[11]);
    }
    {   // A specific library whose file is gone is forgotten.
        Start s;
        s.presetSetting("Startup", "Specific_Lib", s.env.path(QStringLiteral("gone.vkt")));
        ASSERT_EQ(s.run(), StartupResult::Started);
        EXPECT_EQ(s.setting("Startup", "Specific_Lib"), QString());
    }
    struct Bad {
        const char *section, *key, *value;
    };
    const Bad bad[] = {
        {"Import", "Mode", "copy"},
        {"RipData", "MP3_Bitrate", "8a"},
        {"RipData", "WMA_Format", "40000"},
        {"RipData", "MP3_VBR", "perhaps"},
        {"TagData", "TAG_03", "ja"},
    };
    for (const Bad& b : bad) {
        Start s;
        s.presetSetting(b.section, b.key, QLatin1String(b.value));
        EXPECT_EQ(s.run(), StartupResult::BadSetting) << b.key;
        ASSERT_EQ(s.ui.messages.size(), 1u) << b.key;
        const QString text = s.ui.messages[0].text;
        EXPECT_TRUE(text.contains(QLatin1String(b.key)) && text.contains(QLatin1Char('"') + QLatin1String(b.value)
                                                                         + QLatin1Char('"')))
            << text.toStdString();
        EXPECT_FALSE(s.host.calls.contains(QStringLiteral("timer")));
        EXPECT_FALSE(s.log.isOpen());
    }
}

TEST(Startup, CommandLine)
{
    TempEnv env;
    for (const char* name : {"x.vkt", "ab.vkt", "Lib.vkt", "LIB.VKT", "notes.txt"})
        writeFile(env.path(QLatin1String(name)), "[GENERAL]\n");
    const QString oldCwd = QDir::currentPath();
    QDir::setCurrent(env.root());
    const QString lib = env.path(QStringLiteral("Lib.vkt"));
    struct Row {
        QString commandLine, expected;
    };
    const Row rows[] = {
        {QStringLiteral("x.vkt"), QString()},            // 7 characters or fewer: ignored, file or not
        {QStringLiteral("\"ab.vkt\""), QString()},       // 8 with quotes, too short without
        {QStringLiteral("./x.vkt"), QString()},
        {QStringLiteral("./Lib.vkt"), lib},  // kept as an absolute path
        {lib, lib},
        {QLatin1Char('"') + lib + QLatin1Char('"'), lib},
        {QLatin1Char('"') + env.path(QStringLiteral("LIB.VKT")) + QLatin1Char('"'), env.path(QStringLiteral("LIB.VKT"))},
        {env.path(QStringLiteral("notes.txt")), QString()},
        {env.path(QStringLiteral("missing.vkt")), QString()},
    };
    for (const Row& r : rows)
        EXPECT_EQ(Command_Line_Library(r.commandLine), r.expected) << r.commandLine.toStdString();
    EXPECT_EQ(Join_Command_Line({QStringLiteral("/a b/c.vkt"), QStringLiteral("x")}), QStringLiteral("/a b/c.vkt x"));
    QDir::setCurrent(oldCwd);

    // An upper-case extension passes the command line but not the exact check
    // of the open: no library, no message, and Last_Used_Lib becomes "".
    {
        Start s;
        const QString upper = s.env.path(QStringLiteral("MUSIC.VKT"));
        LibraryMaker(s.app.paths, upper).track(makeTrack("A", "T", "/m", "t.mp3")).write();
        s.presetSetting("Startup", "Last_Used_Lib", QStringLiteral("/old.vkt"));
        ASSERT_EQ(s.run(QLatin1Char('"') + upper + QLatin1Char('"')), StartupResult::Started);
        EXPECT_TRUE(s.app.Library_File.isEmpty());
        EXPECT_TRUE(s.lib.MP3_List.isEmpty());
        EXPECT_TRUE(s.ui.messages.empty());
        EXPECT_EQ(s.setting("Startup", "Last_Used_Lib"), QString());
        EXPECT_TRUE(s.logLines().contains(QStringLiteral("Opening ") + upper + QStringLiteral(" at startup")));
    }
    {   // A proper one opens, and keeps MP3_Rip_To.
        Start s;
        const QString path = s.env.path(QStringLiteral("Music.vkt"));
        LibraryMaker(s.app.paths, path).track(makeTrack("A", "T", "/m", "t.mp3")).write();
        s.presetSetting("RipData", "MP3_Rip_To", QStringLiteral("True"));
        ASSERT_EQ(s.run(path), StartupResult::Started);
        EXPECT_EQ(s.app.Library_File, path);
        EXPECT_EQ(s.lib.MP3_List.count(), 1);
        EXPECT_EQ(s.setting("Startup", "Last_Used_Lib"), path);
        EXPECT_EQ(s.setting("RipData", "MP3_Rip_To"), QStringLiteral("True"));
        const QStringList lines = s.logLines();
        EXPECT_EQ(lines.indexOf(QStringLiteral("Opening ") + path + QStringLiteral(" at startup")),
                  lines.indexOf(QStringLiteral("Inspecting CommandLine")) + 1);
    }
}

TEST(Startup, ASecondInstanceIsRefusedBeforeAnyFileIsTouched)
{
    Start first;
    ASSERT_EQ(first.run(), StartupResult::Started);
    const QByteArray log = readFile(first.app.paths.Data_Folder + QStringLiteral("Sonorit.log"));

    ScriptedUi ui;
    Host host;
    SingleInstance second;
    SessionLog secondLog;
    AppState app(first.app.paths);
    EXPECT_EQ(Run_Startup(app, ui, host, second, secondLog, QString(), QString()), StartupResult::AlreadyRunning);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, QStringLiteral("ZEV's MP3 Sonorit already running"));
    EXPECT_EQ(ui.messages[0].title, QString());
    EXPECT_EQ(ui.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(readFile(first.app.paths.Data_Folder + QStringLiteral("Sonorit.log")), log);
    EXPECT_TRUE(host.calls.isEmpty());
}
