// sonorit-cli remove, erase, copy and move: their arguments, rows printed and
// exit codes (what they do to the library the library tests show),
// and a move killed at several moments, after which every track is whole in
// at least one place, the library opens, and a second move completes.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QMap>

#include "cli_run.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

// `count` tracks of ten per album, each in the folder the naming rules give
// it, so that a relocation puts it back where it was. Name to bytes.
QMap<QString, QByteArray> makeTracks(const QString& main, int count)
{
    const QByteArray audio = makeMp3({0.2});
    QMap<QString, QByteArray> tracks;
    for (int i = 0; i < count; ++i) {
        const QString artist = QStringLiteral("%1 Band").arg(QChar('A' + i / 10 % 26));
        const QString album = QStringLiteral("Album %1").arg(i / 10);
        const QString name = QStringLiteral("t%1.mp3").arg(i, 3, 10, QLatin1Char('0'));
        const QByteArray bytes = tag(textFrame("TPE1", artist.toLatin1()) + textFrame("TALB", album.toLatin1())
                                     + textFrame("TIT2", name.toLatin1()) + textFrame("TRCK", QByteArray::number(i % 10 + 1)))
                                 + audio;
        const QString folder = main + "/" + artist[0] + "/" + artist + "/" + album;
        QDir().mkpath(folder);
        writeFile(folder + "/" + name, bytes);
        tracks.insert(name, bytes);
    }
    return tracks;
}

// Every file below the folders, by name, with the places it has.
QMap<QString, QStringList> placesOf(const QStringList& folders)
{
    QMap<QString, QStringList> places;
    for (const QString& folder : folders)
        for (const QString& rel : filesUnder(folder))
            places[QFileInfo(rel).fileName()] << folder + '/' + rel;
    return places;
}

}  // namespace

TEST(CliTrackRemoval, VerbsArgumentsAndExitCodes)
{
    TempEnv env;
    const QString main = env.path("Main"), vkt = env.path("Lib.vkt"), out = env.path("Out");
    makeTracks(main, 20);
    ASSERT_EQ(runCli({"--dialog", main, "new", vkt}).exitCode, 0);
    QDir().mkpath(out);

    struct Case {
        QStringList args;
        int exitCode;
        int rows;  // printed afterwards; -1: none
    };
    const Case cases[] = {
        {{"remove", vkt}, 2, -1},
        {{"remove", vkt, "everything"}, 2, -1},
        {{"remove", vkt, "track", "0"}, 2, -1},
        {{"erase", vkt, "track", "21"}, 2, -1},
        {{"move", vkt, out}, 2, -1},
        {{"remove", vkt, "track", "20"}, 0, 19},
        {{"erase", vkt, "selection", "1", "19"}, 0, 17},
        {{"--dialog", out, "copy", vkt, "album", "1"}, 0, 17},
        {{"copy", vkt, "track", "1"}, 0, 17},  // no folder chosen
        {{"erase", vkt, "album", "1"}, 0, 8},
        {{"--dialog", main + "/Inside", "move", vkt}, 0, 8},  // refused, told in a message
        {{"--dialog", env.path("Main2"), "move", vkt}, 0, 8},
    };
    QDir().mkpath(main + "/Inside");
    QDir().mkpath(env.path("Main2"));
    for (const Case& k : cases) {
        SCOPED_TRACE(k.args.join(' ').toStdString());
        const CliRun r = runCli(k.args);
        EXPECT_EQ(r.exitCode, k.exitCode) << r.err.toStdString();
        if (k.rows >= 0) {
            EXPECT_EQ(r.out.size(), k.rows);
        }
    }
    // A copy that fails stops with status 1 and says which file and why.
    const CliRun opened = runCli({"open", vkt});
    ASSERT_EQ(opened.exitCode, 0);
    QFile::remove(rowPaths(opened)[0]);
    const CliRun failed = runCli({"--dialog", out, "copy", vkt, "track", "1"});
    EXPECT_EQ(failed.exitCode, 1);
    ASSERT_FALSE(failed.json.empty());
    EXPECT_EQ(failed.json.back()["title"].toString(), "Copy failure");
    EXPECT_TRUE(failed.json.back()["text"].toString().contains(rowPaths(opened)[0]));

    EXPECT_EQ(iniValue(vkt, "LIB_FOLDER"), env.path("Main2/"));
}

TEST(CliMoveKill, AKilledMoveLeavesEveryTrackWholeAndTheLibraryOpens)
{
    constexpr int kTracks = 200;
    TempEnv env;
    const QString folders[2] = {env.path("Music"), env.path("Music Moved")};
    const QString vkt = env.path("Lib.vkt");
    const QMap<QString, QByteArray> tracks = makeTracks(folders[0], kTracks);
    writeFile(folders[0] + "/notes.txt", "mine");
    QDir().mkpath(folders[1]);
    ASSERT_EQ(runCli({"--dialog", folders[0], "new", vkt}).exitCode, 0);
    ASSERT_EQ(runCli({"open", vkt}).out.size(), kTracks);

    // Each round moves the library to the other folder, killed on the way,
    // and then moves it again, which must complete.
    const int kills[][2] = {{1, 0}, {60, 300}, {150, 1500}};
    for (int round = 0; round < 3; ++round) {
        const QString target = folders[(round + 1) % 2];
        SCOPED_TRACE("round " + std::to_string(round));
        QDir().mkpath(target);  // the folder dialog offers existing folders
        const QString journal = iniValue(vkt, "ALBUMLIB_NAME") + ".journal";
        ASSERT_TRUE(killWhen({"--dialog", target, "move", vkt},
                             [&] { return readFile(journal).count("TRCK") >= kills[round][0]; }, kills[round][1]))
            << "the move was not caught in the middle";

        const QMap<QString, QStringList> places = placesOf({folders[0], folders[1]});
        for (auto it = tracks.begin(); it != tracks.end(); ++it) {
            ASSERT_TRUE(places.contains(it.key())) << it.key().toStdString();
            for (const QString& path : places[it.key()])
                EXPECT_EQ(readFile(path), it.value()) << path.toStdString();
        }
        const CliRun opened = runCli({"open", vkt});
        ASSERT_EQ(opened.exitCode, 0) << opened.err.toStdString();
        ASSERT_EQ(opened.out.size(), kTracks);
        int astray = 0;
        for (const QString& path : rowPaths(opened))
            astray += QFileInfo::exists(path) ? 0 : 1;
        EXPECT_LE(astray, 1);  // at most the file under way when the kill came

        const CliRun again = runCli({"--dialog", target, "move", vkt});
        ASSERT_EQ(again.exitCode, 0) << again.err.toStdString();
        EXPECT_EQ(iniValue(vkt, "LIB_FOLDER"), target + "/");
        // A file the kill caught between its rename and its record is known
        // in its new place: every row points at its file there.
        for (const QString& path : rowPaths(again))
            EXPECT_TRUE(path.startsWith(target + "/") && QFileInfo::exists(path)) << path.toStdString();
        const QMap<QString, QStringList> after = placesOf({folders[0], folders[1]});
        EXPECT_EQ(after.size(), kTracks + 1);
        for (auto it = after.begin(); it != after.end(); ++it) {
            ASSERT_EQ(it.value().size(), 1) << it.key().toStdString();
            EXPECT_TRUE(it.value()[0].startsWith(target + "/")) << it.value()[0].toStdString();
        }
        EXPECT_EQ(readFile(target + "/notes.txt"), "mine");
    }
}
