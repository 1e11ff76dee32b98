// sonorit-cli play: its options, exit codes and the event lines it prints,
// real files through GStreamer into a fake sink that keeps real time. The
// player's rules (copies, skips, shuffles) the playback tests show.
#include <QJsonDocument>
#include <QJsonObject>
#include <set>

#include <gtest/gtest.h>

#include "tests/cli/cli_run.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"
#include "tests/support/wav_maker.h"

using namespace sonorit::test;

namespace {

struct PlayRun {
    CliRun run;
    std::vector<QJsonObject> events;
    // "start 1 Play01.mp3", "end 1", "skip 2", "stop": the events without
    // the position polls, copies by file name.
    QStringList story;
    std::vector<double> positions;
};

PlayRun play(const QStringList& args)
{
    PlayRun r;
    r.run = runCli(QStringList{"play", "--audio-sink", "fakesink"} + args);
    for (const QString& line : r.run.out) {
        const QJsonObject o = QJsonDocument::fromJson(line.toUtf8()).object();
        r.events.push_back(o);
        const QString e = o.value("event").toString();
        if (e == "position")
            r.positions.push_back(o.value("seconds").toDouble());
        else if (e == "start")
            r.story << QString("start %1 %2").arg(o.value("entry").toInt()).arg(o.value("file").toString().section('/', -1));
        else if (e == "stop")
            r.story << e;
        else
            r.story << QString("%1 %2").arg(e).arg(o.value("entry").toInt());
    }
    return r;
}

class PlayCommandTest : public ::testing::Test {
protected:
    QString mp3(const QString& name, double seconds = 1.0)
    {
        EXPECT_TRUE(writeMp3(env_.path(name), {seconds}));
        return env_.path(name);
    }
    TempEnv env_;
};

TEST_F(PlayCommandTest, EventLinesTellWhatPlaysAndWavBoxesTakeTheAnswers)
{
    const QString one = mp3("one.mp3"), bad = env_.path("bad.mp3"), wav = env_.path("tone.wav");
    writeFile(bad, QByteArray(4000, 'x'));
    ASSERT_TRUE(writeWav(wav, 1.0));

    const PlayRun r = play({"--answers", "Wav Artist,Wav Album", one, bad, wav});
    ASSERT_EQ(r.run.exitCode, 0) << r.run.err.toStdString();
    EXPECT_EQ(r.story, QStringList({"start 1 Play01.mp3", "end 1", "skip 2", "start 3 tone.wav", "end 3", "stop"}));
    // The start line in full: the position, the source and the copy played.
    const QJsonObject first = r.events.front();
    EXPECT_EQ(first.value("pos").toInt(), 1);
    EXPECT_EQ(first.value("source").toString(), one);
    EXPECT_EQ(first.value("file").toString(), env_.paths().Data_Folder + "Play01.mp3");
    EXPECT_GE(r.positions.size(), 2u) << "once a second while a track plays";
    for (double s : r.positions)
        EXPECT_TRUE(s >= 0.5 && s < 1.6) << s;
    // The WAV's boxes took the answers given, then their default.
    for (const char* input : {"\"input\":\"Wav Artist\"", "\"input\":\"Wav Album\"", "\"input\":\"Unknown Title\""})
        EXPECT_TRUE(r.run.err.contains(input)) << input << r.run.err.toStdString();
}

TEST_F(PlayCommandTest, LoopRandomAndSecondsOptions)
{
    const QString one = mp3("a.mp3"), two = mp3("b.mp3");
    writeFile(env_.path("list.m3u"), "#ZEVM3U\r\n#ZEVINF:A | Album | One | 00:01\r\n" + one.toUtf8()
                                         + "\r\n#ZEVINF:A | Album | Two | 00:01\r\n" + two.toUtf8() + "\r\n");
    const PlayRun r = play({"--loop", "--random", "--seconds", "3", env_.path("list.m3u")});
    ASSERT_EQ(r.run.exitCode, 0) << r.run.err.toStdString();
    ASSERT_GE(r.story.size(), 6) << r.story.join(", ").toStdString();
    EXPECT_EQ(r.story.last(), "stop");
    const int first = r.story[0].section(' ', 1, 1).toInt(), second = r.story[2].section(' ', 1, 1).toInt();
    EXPECT_EQ(std::set<int>({first, second}), std::set<int>({1, 2}));
    EXPECT_EQ(r.story[4], QString("start %1 Play01.mp3").arg(first)) << "looped";

    const PlayRun cut = play({"--seconds", "1", mp3("long.mp3", 3.0)});
    EXPECT_EQ(cut.story, QStringList({"start 1 Play01.mp3", "stop"})) << "stopped before its end";
}

TEST_F(PlayCommandTest, BadArgumentsAndFiles)
{
    const QString one = mp3("one.mp3", 0.3);
    writeFile(env_.path("list.m3u"), "one.mp3\r\n");
    const struct {
        QStringList args;
        int exitCode;
    } rows[] = {
        {{}, 2},
        {{"--seconds", "x", one}, 2},
        {{"--volume", one}, 2},
        {{env_.path("list.m3u"), one}, 2},  // a list plays alone
        {{env_.path("missing.mp3")}, 1},
        {{"--audio-sink", "no_such_element", one}, 1},
    };
    for (const auto& row : rows)
        EXPECT_EQ(play(row.args).run.exitCode, row.exitCode) << row.args.join(' ').toStdString();
}

}  // namespace
