// The player with the real GStreamer graph into a fake sink that keeps real
// time: the rules that depend on what the graph reports.
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "platform/gstreamer/gst_media_graph.h"
#include "tests/platform/wma_maker.h"
#include "tests/playback/playback_fixture.h"
#include "tests/support/wav_maker.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct Starts : PlayerView {
    std::vector<TrackStart> starts;
    std::vector<int> skipped;
    void trackStarted(const TrackStart& s) override { starts.push_back(s); }
    void trackSkipped(int entry) override { skipped.push_back(entry); }
};

struct FakeSinkGraphs : GstMediaGraphFactory {
    FakeSinkGraphs() : GstMediaGraphFactory(QStringLiteral("fakesink")) {}
};

struct PlayerPlaybackTest : ::testing::Test, PlayerRig<FakeSinkGraphs, Starts> {
    QString mp3(const QString& name, double seconds)
    {
        EXPECT_TRUE(writeMp3(env.path(name), {seconds}));
        return env.path(name);
    }
};

TEST_F(PlayerPlaybackTest, NextOnTheLastEntryWithoutLoopKeepsPlaying)
{
    ASSERT_TRUE(cmds.Add_Entree_To_PlayList(mp3("first.mp3", 2)));
    ASSERT_TRUE(cmds.Add_Entree_To_PlayList(mp3("last.mp3", 2)));
    play.PlayList_Pos = 2;
    player.Play_Track();
    ASSERT_EQ(view.starts.size(), 1u);
    EXPECT_EQ(player.graphState(), GraphState::Running);
    EXPECT_EQ(play.Time_Slider_Max, 2) << "the graph's duration, rounded";
    std::this_thread::sleep_for(std::chrono::milliseconds(300));

    player.Next_Track();
    EXPECT_EQ(view.starts.size(), 1u) << "no new start";
    EXPECT_EQ(play.PlayList_Pos, 2);
    EXPECT_EQ(player.graphState(), GraphState::Running);
    EXPECT_GT(player.currentPosition().value_or(0), 0.25) << "the same graph plays on, not restarted";

    // A seek by the time slider lands.
    player.timeSliderClick(1);
    EXPECT_NEAR(player.currentPosition().value_or(-1), 1.0, 0.1);

    // With loop, Next goes round to the first entry, into the other copy.
    player.setLoop(true);
    player.Next_Track();
    ASSERT_EQ(view.starts.size(), 2u);
    EXPECT_EQ(view.starts[1].entry, 1);
    EXPECT_EQ(player.graphState(), GraphState::Running);
    player.Stop_Track();
    EXPECT_FALSE(player.hasGraph());
    EXPECT_EQ(player.graphState(), GraphState::Stopped);
}

TEST_F(PlayerPlaybackTest, WavAndWmaEntriesPlayTheFileItself)
{
    QStringList files{env.path("tone.wav")};
    ASSERT_TRUE(writeWav(files[0], 1.0));
    if (writeWma(env.path("tone.wma"), 1.0))
        files << env.path("tone.wma");
    else
        ADD_FAILURE() << "no WMA encoder: install gstreamer1.0-libav";
    for (const QString& f : files)
        ASSERT_TRUE(cmds.Add_Non_MP3_To_PlayList(f, f.section('/', -1)));
    for (int i = 0; i < files.size(); ++i)
        EXPECT_EQ(play.Play_List.field(i, PlayTime), "00:01") << "measured by a throw-away graph";

    play.PlayList_Pos = 1;
    player.Play_Track();
    for (int i = 0; i < files.size(); ++i) {
        if (i > 0)
            player.Next_Track();
        ASSERT_EQ(view.starts.size(), size_t(i + 1));
        EXPECT_EQ(play.Now_File, files[i]) << "no copy";
        EXPECT_EQ(player.graphState(), GraphState::Running) << files[i].toStdString();
    }
    EXPECT_TRUE(view.skipped.empty());
}

}  // namespace
