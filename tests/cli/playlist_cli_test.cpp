// sonorit-cli playlist, queue and dups run as a separate program.
#include <gtest/gtest.h>

#include <QDir>

#include "cli_run.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QString track(const TempEnv& env, const QString& rel, const QString& artist, const QString& title,
              const QString& album = "Album", const QString& number = "1")
{
    const QString path = env.path(rel);
    Mp3Recipe r;
    r.seconds = 0.2;
    writeTaggedMp3(path, TrackTags{artist, album, number, title, "", ""}, r);
    return path;
}

}  // namespace

TEST(CliPlaylist, LoadsMergesSavesAndExports)
{
    TempEnv env;
    const QString a = track(env, "m/a.mp3", "A", "Ay"), b = track(env, "m/b.mp3", "B", "Bee");
    const QString own = env.path("m/own.m3u"), plain = env.path("m/plain.m3u");
    writeFile(own, "#ZEVM3U\r\n#ZEVINF:Ann | One | Ay | 01:00\r\n" + a.toUtf8() + "\r\n"
                   "#ZEVINF:Gone | X | Y | 02:00\r\n" + env.path("m/gone.mp3").toUtf8() + "\r\n");
    writeFile(plain, "#EXTM3U\r\n#EXTINF:1,ignored\r\nb.mp3\r\n");
    QDir().mkpath(env.path("out"));

    const CliRun r = runCli({"playlist", own, "--merge", plain, "--save", env.path("saved.m3u"), "--export", env.path("out")});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    // The missing file kept its row: the rows and the paths part from there.
    EXPECT_EQ(r.out, (QStringList{"1\tAnn\tOne\tAy\t01:00\t" + a, "2\tGone\tX\tY\t02:00\t" + b,
                                  "3\tB\tAlbum\tBee\t00:00\t", "count\t2"}));
    // What the list files hold the playlist tests show; here that the options reached them.
    EXPECT_TRUE(readFile(env.path("saved.m3u")).startsWith("#ZEVM3U\r\n"));
    EXPECT_EQ(QDir(env.path("out")).entryList(QDir::Files, QDir::Name), (QStringList{"a.mp3", "b.mp3"}));
    for (const auto& [args, exitCode] : std::vector<std::pair<QStringList, int>>{
             {{"playlist", env.path("none.m3u")}, 1}, {{"playlist", a}, 1}, {{"playlist"}, 2},
             {{"playlist", own, "--save"}, 2}, {{"playlist", own, "--shuffle", "x"}, 2}})
        EXPECT_EQ(runCli(args).exitCode, exitCode) << args.join(' ').toStdString();
}

TEST(CliQueue, RunsTheMenuCommandsOnLibraryRows)
{
    TempEnv env;
    track(env, "m/x2.mp3", "Abba", "Second", "Gold", "2");
    track(env, "m/x1.mp3", "Abba", "First", "Gold", "1");
    track(env, "m/z.mp3", "Zappa", "Peaches", "Hot Rats", "1");
    auto row = [&](const char* artist, const char* title, const char* file, const char* album, const char* number) {
        TrackRow t = makeTrack(artist, title, env.path("m"), file, album);
        t[ColTrack] = number;
        return t;
    };
    const QString vkt = LibraryMaker(env.paths(), env.path("Music.vkt"))
                            .track(row("Abba", "Second", "x2.mp3", "Gold", "02"))
                            .track(row("Abba", "First", "x1.mp3", "Gold", "01"))
                            .track(row("Zappa", "Peaches", "z.mp3", "Hot Rats", "01"))
                            .track(row("Zappa", "Gone", "gone.mp3", "Hot Rats", "02"))
                            .write().vkt;
    const CliRun album = runCli({"queue", vkt, "album-play", "2"});
    ASSERT_EQ(album.exitCode, 0) << album.err.toStdString();
    EXPECT_EQ(album.out, (QStringList{"1\tAbba\tGold\tFirst\t03:25\t" + env.path("m/x1.mp3"),
                                      "2\tAbba\tGold\tSecond\t03:25\t" + env.path("m/x2.mp3"), "count\t2", "order\t1 2"}));

    // Which rows make it, and in what order, the playlist tests show; the
    // vanished file is passed over without a word.
    const CliRun all = runCli({"queue", vkt, "all-play"});
    ASSERT_EQ(all.exitCode, 0);
    EXPECT_EQ(all.out.size(), 5);  // three good rows, the count, the order
    EXPECT_EQ(all.json.size(), 0u);

    for (const auto& [args, exitCode] : std::vector<std::pair<QStringList, int>>{
             {{"queue", vkt, "shuffle"}, 2}, {{"queue", vkt, "track-add", "9"}, 2},
             {{"queue", env.path("none.vkt"), "all-play"}, 1}})
        EXPECT_EQ(runCli(args).exitCode, exitCode) << args.join(' ').toStdString();
}

TEST(CliDups, PrintsGroupsAndRemovesAsTheWindowDoes)
{
    TempEnv env;
    const QString a = track(env, "d/a.mp3", "A", "T"), c = track(env, "d/c.mp3", "B", "T");
    track(env, "d/b.mp3", "A", "T");
    track(env, "d/d.mp3", "A", "T");
    const QString list = env.path("d/list.m3u");
    writeFile(list, "a.mp3\r\nb.mp3\r\nc.mp3\r\nd.mp3\r\n");

    const CliRun groups = runCli({"dups", list});
    ASSERT_EQ(groups.exitCode, 0);
    EXPECT_EQ(groups.out, QStringList{"1\tT\tA\t1,2,4"});

    // The rules of removal are the scan's own; the list file stays as it was.
    const CliRun removed = runCli({"dups", list, "--remove", "2", "4"});
    ASSERT_EQ(removed.exitCode, 0);
    EXPECT_EQ(removed.out, (QStringList{"1\tT\tA\t1,2,4", "1\tA\tAlbum\tT\t00:00\t" + a, "2\tB\tAlbum\tT\t00:00\t" + c,
                                        "count\t2"}));
    EXPECT_EQ(titlesOf(removed), QStringList{"Scan Result"});
    EXPECT_EQ(readFile(list), "a.mp3\r\nb.mp3\r\nc.mp3\r\nd.mp3\r\n");
    for (const auto& [args, exitCode] : std::vector<std::pair<QStringList, int>>{
             {{"dups", list, "--remove", "3"}, 2},  // in no group
             {{"dups", list, "--remove"}, 2}, {{"dups", env.path("d/none.m3u")}, 1}})
        EXPECT_EQ(runCli(args).exitCode, exitCode) << args.join(' ').toStdString();
}
