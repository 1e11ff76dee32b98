// sonorit-cli album-tag: arguments, output and exit codes.
#include <gtest/gtest.h>

#include "cli_run.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

TEST(CliAlbumTag, WritesTheAlbumAndPrintsTheList)
{
    TempEnv env;
    const QString folder = env.path("Music");
    const QString vkt = env.path("Fav.vkt");
    LibraryMaker maker(env.paths(), vkt);
    for (const char* n : {"2", "1"}) {
        const QString file = QStringLiteral("%1.mp3").arg(n);
        ASSERT_TRUE(writeTaggedMp3(folder + "/" + file, {"Abba", "Gold", n, "Song", "1992", "Pop"}, {0.5}));
        sonorit::TrackRow row = makeTrack("Abba", "Song", folder, file, "Gold");
        row[sonorit::ColTrack] = n;
        maker.track(row);
    }
    maker.track(makeTrack("", "Lone", folder, "lone.mp3", "")).write();
    writeFile(env.path("front.jpg"), QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(64, 'j'));

    const CliRun r = runCli({"album-tag", vkt, "1", "--artist", "ABBA", "--year", "19x93", "--genre", "149:Schlager",
                             "--va", "on", "--track-artist", "2=Agnetha", "--title", "1=Waterloo", "--cover",
                             env.path("front.jpg")});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    ASSERT_EQ(r.out.size(), 3);
    // Track order: the file of track 1 is the album's first track.
    QStringList rows;
    for (const QString& line : r.out)
        rows << line.section('\t', 9, 9) + ": " + line.section('\t', 0, 7);
    rows.sort();
    EXPECT_EQ(rows, QStringList({"1.mp3: Abba\tGold\t01\tWaterloo\t03:25\t1993\tSchlager\tYes",
                                 "2.mp3: Agnetha\tGold\t02\tSong\t03:25\t1993\tSchlager\tYes",
                                 "lone.mp3: \t\t01\tLone\t03:25\t1999\tPop\tNo"}));

    // Told failures: a track without album, a selection of one is an album; two rows of which one lacks nothing.
    const CliRun unknown = runCli({"album-tag", vkt, "3"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(titlesOf(unknown), QStringList({"Unknown Artist/Album"}));
    EXPECT_TRUE(unknown.out.isEmpty());

    const std::pair<QStringList, const char*> usage[] = {
        {{"album-tag", vkt}, "at least one ROW"},
        {{"album-tag", vkt, "1", "--va", "yes"}, "--va is on or off"},
        {{"album-tag", vkt, "1", "--genre", "17:Rock"}, "149"},
        {{"album-tag", vkt, "1", "--track-artist", "1=X"}, "--va on"},
        {{"album-tag", vkt, "1", "--title", "3=X"}, "the album has 2 tracks"},
        {{"album-tag", vkt, "1", "--cover", "track:9"}, "no track of the album"},
        {{"album-tag", vkt, "1", "--cover", vkt}, "--cover takes"},
        {{"album-tag", vkt, "1", "--artist", "A", "--artist", "B"}, "twice"},
        {{"album-tag", vkt, "4"}, "row 4"},
    };
    for (const auto& [args, reason] : usage) {
        const CliRun bad = runCli(args);
        EXPECT_EQ(bad.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(bad.err.contains(reason)) << bad.err.toStdString();
    }
}
