// The library verbs of sonorit-cli run as a separate program in a private home
// on real MP3 files: creating a library over a folder, the three imports,
// rename and relocate by rows, refresh, sort, delete and the usage errors.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include "cli_run.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

// Half a second of LAME audio behind an ID3v2.3 tag; no tag when all are empty.
QByteArray song(const char* artist, const char* album, const char* track, const char* title, bool various = false)
{
    return taggedMp3({artist, album, track, title, {}, {}, various}, {0.5});
}

// Folder and file of each printed row, relative to `base`.
QStringList placesOf(const CliRun& r, const QString& base)
{
    QStringList places;
    for (const QString& path : rowPaths(r))
        places << QDir(base).relativeFilePath(path);
    return places;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
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

TEST(CliLibraryWork, NewLibraryTakesInTheTracksUnderItsMainFolderAndLeavesThemWhereTheyAre)
{
    TempEnv env;
    const QString main = env.path("Music");
    const QMap<QString, QByteArray> files = {
        {"in/b.mp3", song("Abba", "Gold", "01", "Waterloo")},
        {"in/deeper/a.mp3", song("Beatles", "Help", "02", "Yesterday")},
        {"loose.mp3", song("", "", "", "")},
    };
    for (auto it = files.begin(); it != files.end(); ++it)
        writeFile(main + '/' + it.key(), it.value());
    writeFile(main + "/notes.txt", "not audio");

    // The library's name relative to the working folder, as typed in a shell.
    const CliRun r = runCli({"--dialog", "Music", "new", "Lib.vkt"}, env.root());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(titlesOf(r), (QStringList{"Info", "Library Backup?", "MP3 Scan", "Refresh Report"}));
    EXPECT_TRUE(r.json.back()["text"].toString().contains("3 tracks were added."));

    // Rows in folder and file order; an untagged track has empty tag columns.
    EXPECT_EQ(placesOf(r, main), (QStringList{"loose.mp3", "in/b.mp3", "in/deeper/a.mp3"}));
    ASSERT_EQ(r.out.size(), 3);
    EXPECT_EQ(r.out[1].section('\t', 0, 3), "Abba\tGold\t01\tWaterloo");
    EXPECT_EQ(r.out[0].section('\t', 0, 3), "\t\t\t");
    EXPECT_EQ(sorted(rowIds(r)), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3"}));
    for (auto it = files.begin(); it != files.end(); ++it)
        EXPECT_EQ(readFile(main + '/' + it.key()), it.value()) << it.key().toStdString();
    // What was written is what opening reads.
    EXPECT_EQ(iniValue(env.path("Lib.vkt"), "LIB_FOLDER"), main + '/');
    EXPECT_EQ(runCli({"open", env.path("Lib.vkt")}).out, r.out);
}

TEST(CliLibraryWork, NewLibraryTakesItsFoldersFromTheDialogValuesAndStopsWhenTheyRunOut)
{
    TempEnv env;
    QDir().mkpath(env.path("Main"));
    QDir().mkpath(env.path("Backup"));
    const CliRun withBackup = runCli({"--answers", "ok,yes", "--dialog", env.path("Main"), "--dialog",
                                      env.path("Backup"), "new", env.path("B.vkt")});
    ASSERT_EQ(withBackup.exitCode, 0) << withBackup.err.toStdString();
    EXPECT_EQ(iniValue(env.path("B.vkt"), "LIB_FOLDER"), env.path("Main/"));
    EXPECT_EQ(iniValue(env.path("B.vkt"), "BAK_FOLDER"), env.path("Backup/"));
    EXPECT_TRUE(withBackup.out.isEmpty());

    // The Main Folder must be chosen, and a Backup folder asked for keeps being
    // asked for: without values left both end in a usage error and leave no
    // half-made library behind.
    const struct {
        QStringList options;
        const char* lastQuestion;
    } rows[] = {
        {{}, "Info"},
        {{"--answers", "ok,yes", "--dialog", env.path("Main")}, "Library Backup?"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options.join(' ').toStdString());
        const CliRun r = runCli(row.options + QStringList{"new", env.path("C.vkt")});
        EXPECT_EQ(r.exitCode, 2);
        ASSERT_GE(r.json.size(), 2u) << r.err.toStdString();
        EXPECT_EQ(titlesOf(r).back(), "error: no --dialog value left for a dialog the command needs");
        EXPECT_EQ(titlesOf(r).value(int(r.json.size()) - 2), row.lastQuestion);
        EXPECT_FALSE(QFileInfo::exists(env.path("C.vkt")));
    }
    EXPECT_EQ(runCli({"new", env.path("D.notalibrary")}).exitCode, 2);
}

TEST(CliLibraryWork, ImportsCopyIntoTheRuleFoldersAndLeaveTheSourcesAlone)
{
    TempEnv env;
    const QString main = env.path("Main"), vkt = env.path("Lib.vkt");
    QDir().mkpath(main);
    ASSERT_EQ(runCli({"--dialog", main, "new", vkt}).exitCode, 0);
    const QMap<QString, QByteArray> sources = {
        {"One/x.mp3", song("Abba", "Gold", "01", "Waterloo")},
        {"Flat/comp.mp3", song("Blondie", "Hits of 1980", "05", "Atomic", true)},
        {"Flat/untagged.mp3", song("", "", "", "")},
        {"Flat/below/not-by-scan.mp3", song("Cream", "Disraeli Gears", "01", "Strange Brew")},
        {"Tree/a/b/w.mp3", song("10cc", "Sheet Music", "03", "Wall Street Shuffle")},
    };
    for (auto it = sources.begin(); it != sources.end(); ++it)
        writeFile(env.path(it.key()), it.value());
    writeFile(env.path("Flat/notes.mp3"), "no audio here");

    const CliRun add = runCli({"add", vkt, env.path("One/x.mp3"), env.path("One/missing.mp3")});
    EXPECT_EQ(add.exitCode, 0);
    EXPECT_EQ(placesOf(add, main), QStringList{"A/Abba/Gold/x.mp3"});
    EXPECT_EQ(titlesOf(add), QStringList{"error: file not found: " + env.path("One/missing.mp3")});

    // The relative folder is taken from the working folder.
    const CliRun scan = runCli({"scan", vkt, "Flat"}, env.root());
    EXPECT_EQ(scan.exitCode, 0) << scan.err.toStdString();
    EXPECT_EQ(filesUnder(main, {"*.mp3"}),
              (QStringList{"A/Abba/Gold/x.mp3", "Quarantaine/untagged.mp3", "Various Artists/Hits of 1980/comp.mp3"}));

    const CliRun tree = runCli({"scan-tree", vkt, env.path("Tree")});
    EXPECT_EQ(tree.exitCode, 0) << tree.err.toStdString();
    const QStringList all = {"0-9/10cc/Sheet Music/w.mp3", "A/Abba/Gold/x.mp3", "Quarantaine/untagged.mp3",
                             "Various Artists/Hits of 1980/comp.mp3"};
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), all);
    EXPECT_EQ(sorted(placesOf(tree, main)), all);
    EXPECT_TRUE(tree.json.empty()) << tree.err.toStdString();

    // A folder of the library itself is refreshed instead, if the question says so.
    const CliRun inside = runCli({"--answers", "yes", "scan", vkt, main + "/A"});
    EXPECT_EQ(titlesOf(inside), (QStringList{"You cannot 'Import' Library folders!", "Refresh Report"}));
    EXPECT_EQ(inside.out.size(), all.size());

    for (const QStringList& args : QList<QStringList>{
             {"add", vkt}, {"scan", vkt}, {"scan", vkt, env.path("Nowhere")}, {"scan-tree", vkt, "a", "b"}}) {
        EXPECT_EQ(runCli(args).exitCode, 2) << args.join(' ').toStdString();
    }
    EXPECT_EQ(runCli({"add", env.path("None.vkt"), env.path("One/x.mp3")}).exitCode, 1);

    // In move mode of the settings a confirmed overwrite of a track waiting
    // in Quarantaine takes the source away.
    writeFile(env.path("Again/untagged.mp3"), song("", "", "", ""));
    writeFile(env.path(".config/ZEVSonorit/ZEVSonorit.ini"), "[Import]\nMode=1\n");
    const CliRun moved = runCli({"--answers", "yes", "add", vkt, env.path("Again/untagged.mp3")});
    EXPECT_EQ(titlesOf(moved), QStringList{"File exists"});
    EXPECT_FALSE(QFileInfo::exists(env.path("Again/untagged.mp3")));
    EXPECT_EQ(readFile(main + "/Quarantaine/untagged.mp3"), song("", "", "", ""));
}

TEST(CliLibraryWork, RenameAndRelocateTakeTheRowsAsOpenPrintsThem)
{
    TempEnv env;
    const QString main = env.path("Main"), vkt = env.path("Lib.vkt");
    writeFile(main + "/in/t1.mp3", song("Abba", "Gold", "01", "Waterloo"));
    writeFile(main + "/in/t2.mp3", song("Abba", "Gold", "02", "SOS"));
    writeFile(main + "/in/t3.mp3", song("Beatles", "Help", "01", "Help"));
    writeFile(main + "/in/t4.mp3", song("Beatles", "Help", "07", "Ticket to Ride"));
    ASSERT_EQ(runCli({"--dialog", main, "new", vkt}).exitCode, 0);

    // Usage errors change nothing.
    for (const QStringList& args : QList<QStringList>{{"rename", vkt}, {"rename", vkt, "everything"},
                                                      {"rename", vkt, "track", "5"}, {"rename", vkt, "track", "0"},
                                                      {"relocate", vkt, "selection", "1", "x"}}) {
        const CliRun r = runCli(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.out.isEmpty());
    }
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"in/t1.mp3", "in/t2.mp3", "in/t3.mp3", "in/t4.mp3"}));

    const CliRun one = runCli({"rename", vkt, "track", rowOf(vkt, "SOS")});
    EXPECT_EQ(one.exitCode, 0) << one.err.toStdString();
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"in/Abba - Gold - 02 - SOS.mp3", "in/t1.mp3", "in/t3.mp3",
                                                        "in/t4.mp3"}));
    EXPECT_TRUE(placesOf(one, main).contains("in/Abba - Gold - 02 - SOS.mp3"));

    // The first row is the selected one: the album is Waterloo's, not Help's.
    EXPECT_EQ(runCli({"rename", vkt, "album", rowOf(vkt, "Waterloo"), rowOf(vkt, "Help")}).exitCode, 0);
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"in/Abba - Gold - 01 - Waterloo.mp3",
                                                        "in/Abba - Gold - 02 - SOS.mp3", "in/t3.mp3", "in/t4.mp3"}));

    // The selection is every row named, and only those.
    EXPECT_EQ(runCli({"relocate", vkt, "selection", rowOf(vkt, "Ticket to Ride"), rowOf(vkt, "Waterloo")}).exitCode,
              0);
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"A/Abba/Gold/Abba - Gold - 01 - Waterloo.mp3",
                                                        "B/Beatles/Help/t4.mp3", "in/Abba - Gold - 02 - SOS.mp3",
                                                        "in/t3.mp3"}));

    EXPECT_EQ(runCli({"rename", vkt, "all"}).exitCode, 0);
    const CliRun all = runCli({"relocate", vkt, "all"});
    EXPECT_EQ(all.exitCode, 0) << all.err.toStdString();
    const QStringList placed = {"A/Abba/Gold/Abba - Gold - 01 - Waterloo.mp3", "A/Abba/Gold/Abba - Gold - 02 - SOS.mp3",
                                "B/Beatles/Help/Beatles - Help - 01 - Help.mp3",
                                "B/Beatles/Help/Beatles - Help - 07 - Ticket to Ride.mp3"};
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), placed);
    EXPECT_EQ(sorted(placesOf(runCli({"open", vkt}), main)), placed);
}

TEST(CliLibraryWork, RefreshAndSortFollowTheDiskAndDeleteRemovesOnlyTheLibraryFiles)
{
    TempEnv env;
    const QString main = env.path("Main"), vkt = env.path("Lib.vkt");
    writeFile(main + "/a.mp3", song("Abba", "Gold", "01", "Waterloo"));
    writeFile(main + "/b.mp3", song("Abba", "Gold", "02", "SOS"));
    ASSERT_EQ(runCli({"--dialog", main, "new", vkt}).exitCode, 0);

    QFile::remove(main + "/a.mp3");
    writeFile(main + "/sub/c.mp3", song("Cream", "Wheels", "03", "White Room"));
    const CliRun refresh = runCli({"refresh", vkt});
    EXPECT_EQ(refresh.exitCode, 0);
    EXPECT_EQ(placesOf(refresh, main), (QStringList{"b.mp3", "sub/c.mp3"}));
    EXPECT_EQ(titlesOf(refresh), QStringList{"Refresh Report"});
    // Not sorted: the new track took the slot of the one that left.
    EXPECT_EQ(rowIds(refresh), (QStringList{"TRACK 2", "TRACK 1"}));

    const CliRun sort = runCli({"sort", vkt});
    EXPECT_EQ(sort.exitCode, 0);
    EXPECT_EQ(rowIds(sort), (QStringList{"TRACK 1", "TRACK 2"}));
    EXPECT_EQ(placesOf(sort, main), placesOf(refresh, main));
    EXPECT_EQ(runCli({"open", vkt}).out, sort.out);
    EXPECT_EQ(runCli({"refresh", env.path("missing.vkt")}).exitCode, 1);
    EXPECT_EQ(runCli({"sort", vkt, vkt}).exitCode, 2);

    const QStringList libraryFiles = {vkt, iniValue(vkt, "ALBUMLIB_NAME"), iniValue(vkt, "FREEID_NAME")};
    const CliRun keep = runCli({"delete", vkt});  // "no" by default
    EXPECT_EQ(keep.exitCode, 0);
    EXPECT_EQ(titlesOf(keep), QStringList{"Delete Libray?"});
    for (const QString& file : libraryFiles)
        EXPECT_TRUE(QFileInfo::exists(file)) << file.toStdString();

    const CliRun gone = runCli({"--answers", "yes", "delete", vkt});
    EXPECT_EQ(gone.exitCode, 0);
    EXPECT_TRUE(gone.out.isEmpty());
    for (const QString& file : libraryFiles)
        EXPECT_FALSE(QFileInfo::exists(file)) << file.toStdString();
    EXPECT_EQ(filesUnder(main, {"*.mp3"}), (QStringList{"b.mp3", "sub/c.mp3"}));
    EXPECT_EQ(runCli({"delete", vkt}).exitCode, 1);
    EXPECT_EQ(runCli({"delete"}).exitCode, 2);
}
