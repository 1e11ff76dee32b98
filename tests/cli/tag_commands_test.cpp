// The file tag verbs of sonorit-cli (tags, write-tag1, write-tag2, retag,
// strip): the line "tags" prints for each file, several files in one call,
// and the exit codes. What the tag writers keep and refuse the tag tests show.
#include <gtest/gtest.h>

#include <QFileInfo>

#include "cli_run.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

// 230 frames of 1152 samples at 44.1 kHz: 6.008 seconds.
const QByteArray kFrames = mp3Frame().repeated(230);

// The object that "tags" prints on the file's line.
QJsonObject tagsOf(const QString& path)
{
    const CliRun r = runCli({"tags", path});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.size(), 1);
    return QJsonDocument::fromJson(r.out.value(0).toUtf8()).object();
}

}  // namespace

TEST(CliTags, WritesAreReadBackByTagsAndStripKeepsTheAudio)
{
    TempEnv env;
    const QString song = env.path("song.mp3");
    writeFile(song, kFrames);
    ASSERT_EQ(runCli({"write-tag2", song, "--artist", "Kraftwerk", "--title", " Ohm ", "--track", "7", "--genre",
                      "Electronic"}).exitCode, 0);
    ASSERT_EQ(runCli({"write-tag1", song, "--title", "Ohm", "--track", "7", "--genre", "52"}).exitCode, 0);
    const QJsonObject t = tagsOf(song);
    const QJsonObject tag2 = t["tag2"].toObject();
    EXPECT_TRUE(tag2["present"].toBool());
    EXPECT_EQ(tag2["artist"].toString() + "|" + tag2["title"].toString() + "|" + tag2["track"].toString() + "|"
                  + tag2["genre"].toString(),
              "Kraftwerk|Ohm|07|Electronic");
    EXPECT_EQ(t["tag1"]["title"].toString(), QString("Ohm").leftJustified(30));
    EXPECT_EQ(t["tag1"]["genre"].toInt(), 52);
    const int tagSize = tag2["total_size"].toInt();
    EXPECT_EQ(t["mpeg"]["position"].toInt(), tagSize + 1);  // the first frame follows the tag
    EXPECT_EQ(t["seconds"].toInt(), 6);
    EXPECT_EQ(t["frames"].toInt(), 230);

    EXPECT_EQ(runCli({"strip", song, env.path("stripped.mp3")}).exitCode, 0);  // the ID3v1 tag kept
    EXPECT_EQ(readFile(env.path("stripped.mp3")), readFile(song).mid(tagSize));
}

TEST(CliTags, SeveralFilesInOneCallAndWhatEachFailureReturns)
{
    TempEnv env;
    const QString a = env.path("a.mp3"), b = env.path("b.mp3"), missing = env.path("gone.mp3");
    ASSERT_TRUE(writeMp3(a, {2}));
    ASSERT_TRUE(writeMp3(b, {2}));
    const auto artistOf = [](const QString& path) { return tagsOf(path)["tag2"].toObject()["artist"].toString(); };
    EXPECT_EQ(runCli({"write-tag2", a, "--artist", "Can", b}).exitCode, 0);
    EXPECT_EQ(artistOf(a) + artistOf(b), "CanCan");
    EXPECT_EQ(runCli({"write-tag2", a, missing, b, "--artist", "Neu!"}).exitCode, 1);
    EXPECT_EQ(artistOf(a) + artistOf(b), "Neu!Neu!");  // the others are written all the same
    EXPECT_EQ(runCli({"retag", a, b}).exitCode, 0);

    // A missing file, a pipe, a device and a folder each give an error line,
    // the command ends and the other file's line still comes.
    ASSERT_EQ(QProcess::execute("mkfifo", {env.path("fifo")}), 0);
    const CliRun r = runCli({"tags", missing, env.path("fifo"), "/dev/zero", env.root(), a});
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.out.size(), 5);
    const QJsonObject failed = QJsonDocument::fromJson(r.out[0].toUtf8()).object();
    EXPECT_EQ(failed.keys(), (QStringList{"error", "path"}));
    EXPECT_EQ(failed["path"].toString(), missing);
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(QJsonDocument::fromJson(r.out[i].toUtf8())["error"].toString(), "Not a regular file") << i;
    EXPECT_EQ(QJsonDocument::fromJson(r.out[4].toUtf8())["tag2"]["artist"].toString(), "Neu!");

    // A write the tag swap refuses: status 1 and its message; no audio frame to strip: status 1, no output file.
    const QByteArray junk = QByteArray("ID3\x03\0\0\0\0\0\x0a", 10) + QByteArray(10, 'x') + QByteArray(3000, 'j');
    writeFile(env.path("junk.mp3"), junk);
    const CliRun write = runCli({"write-tag2", env.path("junk.mp3"), "--artist", "X"});
    EXPECT_EQ(write.exitCode, 1);
    EXPECT_EQ(titlesOf(write), QStringList{"Tag update error"});
    EXPECT_EQ(readFile(env.path("junk.mp3")), junk);
    EXPECT_EQ(runCli({"strip", env.path("junk.mp3"), env.path("out.mp3")}).exitCode, 1);
    EXPECT_FALSE(QFileInfo::exists(env.path("out.mp3")));
}

TEST(CliTags, MalformedValuesAreRefusedBeforeAnyFileIsTouched)
{
    TempEnv env;
    const QString song = env.path("song.mp3"), other = env.path("other.mp3");
    ASSERT_TRUE(writeMp3(song, {2}));
    ASSERT_TRUE(writeMp3(other, {2}));
    const QByteArray before = readFile(song);
    const QStringList refused[] = {
        {"write-tag1", song, "--track", "256"},      {"write-tag1", song, "--year", "19x5"},
        {"write-tag1", song, "--genre", "150"},      {"write-tag1", song, "--title", QString(31, 'x')},
        {"write-tag2", song, "--track", "99999"},    {"write-tag2", song, "--va", "maybe"},
        {"write-tag2", song, "--cover", env.path("missing.jpg")},
        {"write-tag2", song, "--bogus", "x"},        {"write-tag2", song, "--artist"},
        {"write-tag2", "--artist", "X"},             {"retag", song, "--artist", "X"},
        {"--answers", "yes,perhaps", "write-tag2", song},
        {"write-tag2", other, song, "--track", "1x"},  // refused before the first file is touched
    };
    for (const QStringList& args : refused) {
        const CliRun r = runCli(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(!r.json.empty() && r.json[0].contains("error")) << r.err.toStdString();
    }
    EXPECT_EQ(runCli({"strip", song}).exitCode, 2);
    EXPECT_EQ(readFile(song), before);
    EXPECT_EQ(readFile(other), before);
}
