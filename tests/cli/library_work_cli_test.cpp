// The library verbs of sonorit-cli as a separate program: what only the
// command line adds (names relative to the working folder, --dialog values,
// rows numbered as "open" prints them, exit codes, printed rows). What the
// verbs do to a library the library tests show.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include "cli_run.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

QByteArray song(const char* artist, const char* album, const char* track, const char* title)
{
    return taggedMp3({artist, album, track, title, {}, {}}, {0.5});
}

// The 1-based row of the printed list whose Title column is `title`.
QString rowOf(const QString& vkt, const QString& title)
{
    const CliRun r = runCli({"open", vkt});
    for (int i = 0; i < r.out.size(); ++i)
        if (r.out[i].section('\t', 3, 3) == title)
            return QString::number(i + 1);
    ADD_FAILURE() << "no row titled " << title.toStdString();
    return "0";
}

}  // namespace

TEST(CliLibraryWork, NewTakesRelativeNamesAndDialogValuesAndStopsWhenTheyRunOut)
{
    TempEnv env;
    writeFile(env.path("Music/in/b.mp3"), song("Abba", "Gold", "01", "Waterloo"));
    writeFile(env.path("Music/loose.mp3"), song("", "", "", ""));
    const CliRun r = runCli({"--dialog", "Music", "new", "Lib.vkt"}, env.root());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(titlesOf(r), (QStringList{"Info", "Library Backup?", "MP3 Scan", "Refresh Report"}));
    EXPECT_EQ(iniValue(env.path("Lib.vkt"), "LIB_FOLDER"), env.path("Music/"));
    // The rows as "open" prints them; an untagged track has empty tag columns.
    ASSERT_EQ(r.out.size(), 2);
    EXPECT_EQ(r.out[0].section('\t', 0, 3), "\t\t\t");
    EXPECT_EQ(r.out[1].section('\t', 0, 3), "Abba\tGold\t01\tWaterloo");
    EXPECT_EQ(runCli({"open", env.path("Lib.vkt")}).out, r.out);

    QDir().mkpath(env.path("Main"));
    QDir().mkpath(env.path("Backup"));
    const CliRun withBackup = runCli({"--answers", "ok,yes", "--dialog", env.path("Main"), "--dialog",
                                      env.path("Backup"), "new", env.path("B.vkt")});
    ASSERT_EQ(withBackup.exitCode, 0) << withBackup.err.toStdString();
    EXPECT_EQ(iniValue(env.path("B.vkt"), "BAK_FOLDER"), env.path("Backup/"));

    // Without a value left for a folder dialog: a usage error, and no half-made library.
    const struct {
        QStringList options;
        const char* lastQuestion;
    } rows[] = {
        {{}, "Info"},
        {{"--answers", "ok,yes", "--dialog", env.path("Main")}, "Library Backup?"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options.join(' ').toStdString());
        const CliRun bad = runCli(row.options + QStringList{"new", env.path("C.vkt")});
        EXPECT_EQ(bad.exitCode, 2);
        ASSERT_GE(bad.json.size(), 2u) << bad.err.toStdString();
        EXPECT_EQ(titlesOf(bad).back(), "error: no --dialog value left for a dialog the command needs");
        EXPECT_EQ(titlesOf(bad).value(int(bad.json.size()) - 2), row.lastQuestion);
        EXPECT_FALSE(QFileInfo::exists(env.path("C.vkt")));
    }
}

TEST(CliLibraryWork, VerbsTakeRowsAsOpenPrintsThemAndExitByTheirOutcome)
{
    TempEnv env;
    const QString main = env.path("Main"), vkt = env.path("Lib.vkt");
    writeFile(main + "/in/t1.mp3", song("Abba", "Gold", "01", "Waterloo"));
    writeFile(main + "/in/t2.mp3", song("Abba", "Gold", "02", "SOS"));
    writeFile(main + "/in/t3.mp3", song("Beatles", "Help", "01", "Help"));
    writeFile(env.path("One/x.mp3"), song("Cream", "Wheels", "03", "White Room"));
    writeFile(env.path("Flat/y.mp3"), song("Doors", "Doors", "01", "Break"));
    ASSERT_EQ(runCli({"--dialog", main, "new", vkt}).exitCode, 0);

    // Usage errors change nothing and print no rows.
    for (const QStringList& args : QList<QStringList>{
             {"rename", vkt}, {"rename", vkt, "everything"}, {"rename", vkt, "track", "4"}, {"rename", vkt, "track", "0"},
             {"relocate", vkt, "selection", "1", "x"}, {"add", vkt}, {"scan", vkt}, {"scan", vkt, env.path("Nowhere")},
             {"scan-tree", vkt, "a", "b"}, {"sort", vkt, vkt}, {"delete"}, {"new", env.path("D.notalibrary")}}) {
        const CliRun r = runCli(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.out.isEmpty()) << args.join(' ').toStdString();
    }
    for (const QStringList& args : QList<QStringList>{{"add", env.path("None.vkt"), env.path("One/x.mp3")},
                                                      {"refresh", env.path("missing.vkt")}})
        EXPECT_EQ(runCli(args).exitCode, 1) << args.join(' ').toStdString();
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"in/t1.mp3", "in/t2.mp3", "in/t3.mp3"}));

    // The first row named is the selected one: the album is Waterloo's, not Help's.
    EXPECT_EQ(runCli({"rename", vkt, "album", rowOf(vkt, "Waterloo"), rowOf(vkt, "Help")}).exitCode, 0);
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"in/Abba - Gold - 01 - Waterloo.mp3",
                                                        "in/Abba - Gold - 02 - SOS.mp3", "in/t3.mp3"}));
    // The selection is every row named, and only those.
    const CliRun relocated = runCli({"relocate", vkt, "selection", rowOf(vkt, "Help"), rowOf(vkt, "SOS")});
    EXPECT_EQ(relocated.exitCode, 0);
    const QStringList placed = {"A/Abba/Gold/Abba - Gold - 02 - SOS.mp3", "B/Beatles/Help/t3.mp3",
                                "in/Abba - Gold - 01 - Waterloo.mp3"};
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), placed);
    EXPECT_EQ(relocated.out, runCli({"open", vkt}).out);

    // A missing file among those added is told and the others still go in;
    // a relative folder is taken from the working folder.
    const CliRun add = runCli({"add", vkt, env.path("One/x.mp3"), env.path("One/missing.mp3")});
    EXPECT_EQ(add.exitCode, 0);
    EXPECT_EQ(titlesOf(add), QStringList{"error: file not found: " + env.path("One/missing.mp3")});
    EXPECT_EQ(add.out.size(), 4);
    EXPECT_EQ(runCli({"scan", vkt, "Flat"}, env.root()).out.size(), 5);

    // Delete answers "no" by default.
    const CliRun keep = runCli({"delete", vkt});
    EXPECT_EQ(keep.exitCode, 0);
    EXPECT_EQ(titlesOf(keep), QStringList{"Delete Libray?"});
    EXPECT_TRUE(QFileInfo::exists(vkt));
    const CliRun gone = runCli({"--answers", "yes", "delete", vkt});
    EXPECT_EQ(gone.exitCode, 0);
    EXPECT_TRUE(gone.out.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(vkt));
    EXPECT_EQ(runCli({"delete", vkt}).exitCode, 1);
}
