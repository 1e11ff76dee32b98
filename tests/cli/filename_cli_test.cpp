// sonorit-cli filename-words and filename-tag: arguments, output and exit codes.
#include <gtest/gtest.h>

#include "cli_run.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

TEST(CliFilename, WordsOneEntryPerLine)
{
    const CliRun r = runCli({"filename-words", "Abba_-_Gold%20Hits.mp3"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, QStringList({"Abba", "Abba Gold", "Abba Gold Hits", "Gold", "Gold Hits", "Hits"}));
    EXPECT_EQ(runCli({"filename-words"}).exitCode, 2);
}

TEST(CliFilename, TagWritesTheRowAndPrintsTheList)
{
    TempEnv env;
    const QString folder = env.path("Music");
    ASSERT_TRUE(writeTaggedMp3(folder + "/Abba - Waterloo.mp3", {}, {0.5}));
    const QString vkt = env.path("Fav.vkt");
    sonorit::TrackRow row = makeTrack("", "", folder, "Abba - Waterloo.mp3");
    LibraryMaker(env.paths(), vkt).track(row).write();

    const CliRun r = runCli({"filename-tag", vkt, "1", "--artist", "Abba", "--album", "Gold", "--title", "Waterloo",
                             "--track", "7x", "--genre", "149:Schlager", "--va", "--mode", "v2"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    ASSERT_EQ(r.out.size(), 1);
    EXPECT_EQ(r.out[0].split('\t').mid(0, 8),
              QStringList({"Abba", "Gold", "07", "Waterloo", "00:01", "", "Schlager", "Yes"}));

    const std::pair<QStringList, const char*> usage[] = {
        {{"filename-tag", vkt, "1", "--artist", "A", "--album", "B"}, "--title is required"},
        {{"filename-tag", vkt, "--artist", "A", "--album", "B", "--title", "C"}, "one ROW"},
        {{"filename-tag", vkt, "1", "--artist", "A", "--album", "B", "--title", "C", "--mode", "v3"}, "--mode"},
        {{"filename-tag", vkt, "1", "--artist", "A", "--album", "B", "--title", "C", "--genre", "17:Rock"}, "149"},
        {{"filename-tag", vkt, "2", "--artist", "A", "--album", "B", "--title", "C"}, "row 2"},
    };
    for (const auto& [args, reason] : usage) {
        const CliRun bad = runCli(args);
        EXPECT_EQ(bad.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(bad.err.contains(reason)) << bad.err.toStdString();
    }
}
