// The tag verbs of sonorit-cli, run as a separate program in a private home on
// an MP3 made by LAME: what "tags" reports after each write, and the failures.
#include <gtest/gtest.h>

#include <QFileInfo>

#include "cli_run.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

constexpr int kSeconds = 2;  // of LAME audio, the same each time it is made

// The object that "tags" prints on the file's line.
QJsonObject tagsOf(const QString& path)
{
    const CliRun r = runCli({"tags", path});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.size(), 1);
    return QJsonDocument::fromJson(r.out.value(0).toUtf8()).object();
}

}  // namespace

TEST(CliTags, WrittenTagsAreReadBackAndTheAudioStaysAsItWas)
{
    TempEnv env;
    const QString song = env.path("song.mp3"), stripped = env.path("stripped.mp3");
    ASSERT_TRUE(writeMp3(song, {kSeconds}));
    const QByteArray audio = makeMp3({kSeconds});
    const int frames = tagsOf(song)["frames"].toInt();
    EXPECT_GT(frames, 70);

    ASSERT_EQ(runCli({"write-tag2", song, "--artist", "Kraftwerk", "--album", "Radioaktivit\u00e4t", "--title", " Ohm ",
                      "--track", "7", "--year", "1975", "--genre", "Electronic", "--comment", "a note"}).exitCode, 0);
    QJsonObject t = tagsOf(song);
    const QJsonObject tag2 = t["tag2"].toObject();
    EXPECT_TRUE(tag2["present"].toBool());
    const QStringList keys = {"artist", "album", "title", "track", "year", "genre", "comment", "frames", "va"};
    const QStringList values = {"Kraftwerk", "Radioaktivit\u00e4t", "Ohm", "07", "1975", "Electronic", "a note",
                                QString::number(frames), ""};
    for (int i = 0; i < keys.size(); ++i)
        EXPECT_EQ(tag2[keys[i]].toString(), values[i]) << keys[i].toStdString();
    const int tagSize = tag2["total_size"].toInt();
    EXPECT_TRUE(t["mpeg"].toObject()["valid"].toBool());
    EXPECT_EQ(t["mpeg"].toObject()["position"].toInt(), tagSize + 1);  // the first frame follows the tag
    EXPECT_EQ(t["seconds"].toInt(), kSeconds);
    EXPECT_EQ(t["frames"].toInt(), frames);
    EXPECT_EQ(readFile(song).mid(tagSize), audio);

    ASSERT_EQ(runCli({"write-tag1", song, "--title", "Ohm", "--artist", "Kraftwerk", "--album", "Radio", "--year",
                      "1975", "--comment", "c", "--track", "7", "--genre", "52"}).exitCode, 0);
    t = tagsOf(song);
    const QJsonObject tag1 = t["tag1"].toObject();
    EXPECT_EQ(tag1["title"].toString(), QString("Ohm").leftJustified(30));
    EXPECT_EQ(tag1["artist"].toString(), QString("Kraftwerk").leftJustified(30));
    EXPECT_EQ(tag1["album"].toString(), QString("Radio").leftJustified(30));
    EXPECT_EQ(tag1["year"].toString(), "1975");
    EXPECT_EQ(tag1["comment"].toString(), QString("c").leftJustified(28));
    EXPECT_EQ(tag1["track"].toInt(), 7);
    EXPECT_EQ(tag1["genre"].toInt(), 52);
    EXPECT_EQ(t["tag2"].toObject()["artist"].toString(), "Kraftwerk");
    EXPECT_EQ(readFile(song).mid(tagSize), audio + "TAG" + readFile(song).right(125));

    EXPECT_EQ(runCli({"strip", song, stripped}).exitCode, 0);  // from the first frame on, the ID3v1 tag kept
    EXPECT_EQ(readFile(stripped), readFile(song).mid(tagSize));
}

TEST(CliTags, FailuresLeaveTheFilesAsTheyWere)
{
    TempEnv env;
    const QString song = env.path("song.mp3"), missing = env.path("missing.mp3"), junk = env.path("junk.mp3");
    ASSERT_TRUE(writeMp3(song, {kSeconds}));
    const QByteArray junkBytes = QByteArray("ID3\x03\0\0\0\0\0\x0a", 10) + QByteArray(10, 'x') + QByteArray(3000, 'j');
    writeFile(junk, junkBytes);

    const CliRun tags = runCli({"tags", missing, song});  // the other file's line still comes
    EXPECT_EQ(tags.exitCode, 1);
    ASSERT_EQ(tags.out.size(), 2);
    const QJsonObject failed = QJsonDocument::fromJson(tags.out[0].toUtf8()).object();
    EXPECT_EQ(failed.keys(), (QStringList{"error", "path"}));
    EXPECT_EQ(failed["path"].toString(), missing);
    EXPECT_FALSE(failed["error"].toString().isEmpty());
    EXPECT_EQ(QJsonDocument::fromJson(tags.out[1].toUtf8())["path"].toString(), song);

    const CliRun write = runCli({"write-tag2", junk, "--artist", "X"});
    EXPECT_EQ(write.exitCode, 1);
    ASSERT_EQ(write.json.size(), 1u) << write.err.toStdString();
    EXPECT_EQ(write.json[0]["title"].toString(), "Tag update error");
    EXPECT_EQ(write.json[0]["text"].toString(),
              "An error occured whilst trying updating Tag3v2, changes are discarded");
    EXPECT_EQ(readFile(junk), junkBytes);
    EXPECT_FALSE(QFileInfo::exists(env.paths().Data_Folder + "Temp.mp3"));

    EXPECT_EQ(runCli({"strip", junk, env.path("out.mp3")}).exitCode, 1);  // no audio frame
    EXPECT_FALSE(QFileInfo::exists(env.path("out.mp3")));
    EXPECT_EQ(runCli({"strip", song}).exitCode, 2);
}
