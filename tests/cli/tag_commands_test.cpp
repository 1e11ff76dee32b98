// The tag verbs of sonorit-cli, run as a separate program in a private home on
// an MP3 made by LAME: what "tags" reports after each write, and the failures.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "cli_run.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

constexpr int kSeconds = 2;  // of LAME audio, the same each time it is made
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

// The values of `keys` in `o`, numbers as text.
QStringList valuesOf(const QJsonObject& o, const QStringList& keys)
{
    QStringList values;
    for (const QString& k : keys)
        values << (o[k].isDouble() ? QString::number(o[k].toInt()) : o[k].toString());
    return values;
}

}  // namespace

TEST(CliTags, WrittenTagsAreReadBackAndTheAudioStaysAsItWas)
{
    TempEnv env;
    const QString song = env.path("song.mp3"), stripped = env.path("stripped.mp3");
    const QByteArray audio = kFrames;
    writeFile(song, audio);

    ASSERT_EQ(runCli({"write-tag2", song, "--artist", "Kraftwerk", "--album", "Radioaktivit\u00e4t", "--title", " Ohm ",
                      "--track", "7", "--year", "1975", "--genre", "Electronic", "--comment", "a note"}).exitCode, 0);
    QJsonObject t = tagsOf(song);
    const QJsonObject tag2 = t["tag2"].toObject();
    EXPECT_TRUE(tag2["present"].toBool());
    EXPECT_EQ(valuesOf(tag2, {"artist", "album", "title", "track", "year", "genre", "comment", "frames", "va"}),
              (QStringList{"Kraftwerk", "Radioaktivit\u00e4t", "Ohm", "07", "1975", "Electronic", "a note", "230", ""}));
    const int tagSize = tag2["total_size"].toInt();
    EXPECT_TRUE(t["mpeg"].toObject()["valid"].toBool());
    EXPECT_EQ(t["mpeg"].toObject()["position"].toInt(), tagSize + 1);  // the first frame follows the tag
    EXPECT_EQ(t["seconds"].toInt(), 6);
    EXPECT_EQ(t["frames"].toInt(), 230);
    EXPECT_EQ(readFile(song).mid(tagSize), audio);

    ASSERT_EQ(runCli({"write-tag1", song, "--title", "Ohm", "--artist", "Kraftwerk", "--album", "Radio", "--year",
                      "1975", "--comment", "c", "--track", "7", "--genre", "52"}).exitCode, 0);
    t = tagsOf(song);
    EXPECT_EQ(valuesOf(t["tag1"].toObject(), {"title", "artist", "album", "year", "comment", "track", "genre"}),
              (QStringList{QString("Ohm").leftJustified(30), QString("Kraftwerk").leftJustified(30),
                           QString("Radio").leftJustified(30), "1975", QString("c").leftJustified(28), "7", "52"}));
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

    // A write that fails: the swap's message, the file as it was.
    const CliRun write = runCli({"write-tag2", junk, "--artist", "X"});
    EXPECT_EQ(write.exitCode, 1);
    ASSERT_EQ(write.json.size(), 1u) << write.err.toStdString();
    EXPECT_EQ(write.json[0]["title"].toString(), "Tag update error");
    EXPECT_EQ(readFile(junk), junkBytes);

    EXPECT_EQ(runCli({"strip", junk, env.path("out.mp3")}).exitCode, 1);  // no audio frame
    EXPECT_FALSE(QFileInfo::exists(env.path("out.mp3")));
    EXPECT_EQ(runCli({"strip", song}).exitCode, 2);
}

TEST(CliTags, MalformedValuesAndReadOnlyFilesChangeNothing)
{
    TempEnv env;
    const QString song = env.path("song.mp3"), other = env.path("other.mp3");
    ASSERT_TRUE(writeMp3(song, {kSeconds}));
    ASSERT_TRUE(writeMp3(other, {kSeconds}));
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
    EXPECT_EQ(readFile(song), before);
    EXPECT_EQ(readFile(other), makeMp3({kSeconds}));

    // A file made read-only stays as it is, with the write's failure message.
    QFile::setPermissions(song, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    const std::pair<QStringList, QString> writes[] = {
        {{"write-tag1", song, "--title", "T"}, "Tag Save Failure"},
        {{"write-tag2", song, "--title", "T"}, "Tag update error"},
        {{"retag", song}, "Tag update error"},
    };
    for (const auto& [args, title] : writes) {
        const CliRun r = runCli(args);
        EXPECT_EQ(r.exitCode, 1) << args[0].toStdString();
        ASSERT_FALSE(r.json.empty()) << args[0].toStdString();
        EXPECT_EQ(r.json.back()["title"].toString(), title);
        EXPECT_EQ(readFile(song), before) << args[0].toStdString();
        EXPECT_FALSE(QFileInfo(song).permissions() & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther));
    }
}

TEST(CliTags, SeveralFilesInOneCallAndSpecialFilesNeverBlock)
{
    TempEnv env;
    const QString a = env.path("a.mp3"), b = env.path("b.mp3"), fifo = env.path("fifo");
    ASSERT_TRUE(writeMp3(a, {kSeconds}));
    ASSERT_TRUE(writeMp3(b, {kSeconds}));
    const auto artistOf = [](const QString& path) { return tagsOf(path)["tag2"].toObject()["artist"].toString(); };
    EXPECT_EQ(runCli({"write-tag2", a, "--artist", "Can", b}).exitCode, 0);
    EXPECT_EQ(artistOf(a) + artistOf(b), "CanCan");
    EXPECT_EQ(runCli({"write-tag2", a, env.path("gone.mp3"), b, "--artist", "Neu!"}).exitCode, 1);
    EXPECT_EQ(artistOf(a) + artistOf(b), "Neu!Neu!");  // the others are written all the same
    EXPECT_EQ(runCli({"write-tag1", a, b, "--artist", "Faust"}).exitCode, 0);
    EXPECT_EQ(tagsOf(b)["tag1"].toObject()["artist"].toString().trimmed(), "Faust");
    EXPECT_EQ(runCli({"retag", a, b}).exitCode, 0);
    EXPECT_EQ(artistOf(a) + artistOf(b), "Neu!Neu!");

    // A pipe, a device and a folder each give an error line; the command ends.
    ASSERT_EQ(QProcess::execute("mkfifo", {fifo}), 0);
    const CliRun r = runCli({"tags", fifo, "/dev/zero", env.root(), a});
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.out.size(), 4);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(QJsonDocument::fromJson(r.out[i].toUtf8())["error"].toString(), "Not a regular file") << i;
    EXPECT_EQ(QJsonDocument::fromJson(r.out[3].toUtf8())["tag2"]["artist"].toString(), "Neu!");
}

// A v2.4 tag as Debian's mutagen writes it: no tag at all by default, every
// field with the setting on, and stored as v2.3 by the next write.
TEST(CliTags, OtherTagVersionsFollowTheSetting)
{
    const char* script = R"PY(
import sys
from mutagen.id3 import ID3, TPE1, TALB, TDRC, TCON, TXXX, APIC, COMM
if sys.argv[1] == "make":
    t = ID3()
    for f in [TPE1(encoding=3, text=["Sigur Rós"]), TALB(encoding=1, text=["Takk"]), TDRC(encoding=3, text=["2005-09-12"]),
              TCON(encoding=3, text=["Post-Rock"]), COMM(encoding=3, lang="isl", desc="", text="Frábært"),
              TXXX(encoding=3, desc="gain", text=["-6 dB"]), APIC(encoding=3, mime="image/jpeg", type=3, desc="Forsíða", data=b"\xff\xd8JPEG")]:
        t.add(f)
    t.save(sys.argv[2], v2_version=4)
else:
    t = ID3(sys.argv[2], translate=False)
    print(t.version[1], t["TPE1"].text[0], t["TYER"].text[0], t["TXXX:gain"].text[0], t["APIC:Forsíða"].data.hex())
)PY";
    const auto mutagen = [&](const QString& command, const QString& path) {
        QProcess p;
        p.start("/usr/bin/python3", {"-c", script, command, path});
        const bool ok = p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
        return ok ? QString::fromUtf8(p.readAllStandardOutput()).trimmed() : QString("error");
    };
    TempEnv env;
    const QString song = env.path("song.mp3");
    ASSERT_TRUE(writeMp3(song, {kSeconds}));
    if (mutagen("make", song) == "error")
        GTEST_SKIP() << "Debian's python3-mutagen is not installed";
    const QByteArray made = readFile(song);
    EXPECT_FALSE(tagsOf(song)["tag2"].toObject()["present"].toBool());
    EXPECT_EQ(runCli({"retag", song}).exitCode, 0);  // off, a write drops the tag, as it always did
    EXPECT_EQ(mutagen("dump", song), "error");

    writeFile(song, made);
    writeFile(env.paths().Settings_File, "[TagData]\nTAG_READ_OTHER=True\n");
    const QJsonObject tag2 = tagsOf(song)["tag2"].toObject();
    EXPECT_EQ(valuesOf(tag2, {"artist", "album", "year", "genre", "comment", "comment_language"}),
              QStringList({"Sigur Rós", "Takk", "2005", "Post-Rock", "Frábært", "isl"}));
    EXPECT_TRUE(tag2["cover"].toBool());
    EXPECT_EQ(runCli({"write-tag2", song, "--title", "Sæglópur"}).exitCode, 0);
    EXPECT_EQ(mutagen("dump", song), "3 Sigur Rós 2005 -6 dB ffd84a504547");
    EXPECT_EQ(tagsOf(song)["tag2"].toObject()["title"].toString(), "Sæglópur");
}
