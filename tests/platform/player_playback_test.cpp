// The player with the real GStreamer graph into a fake sink that keeps real
// time: the rules that depend on what the graph reports.
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "library/library_state.h"
#include "platform/gstreamer/gst_media_graph.h"
#include "playback/player.h"
#include "playback/playlist_commands.h"
#include "tests/platform/wma_maker.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"
#include "tests/support/wav_maker.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

void sleepMs(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

struct Starts : PlayerView {
    std::vector<TrackStart> starts;
    std::vector<int> skipped;
    void trackStarted(const TrackStart& s) override { starts.push_back(s); }
    void trackSkipped(int entry) override { skipped.push_back(entry); }
};

class PlayerPlaybackTest : public ::testing::Test {
protected:
    QString mp3(const QString& name, double seconds)
    {
        Mp3Recipe r;
        r.seconds = seconds;
        const QString path = env.path(name);
        EXPECT_TRUE(writeMp3(path, r));
        return path;
    }

    TempEnv env;
    AppState app{env.paths()};
    LibraryState lib;
    PlaybackState play;
    ScriptedUi ui;
    GstMediaGraphFactory graphs{QStringLiteral("fakesink")};
    Starts view;
    Player player{PlaybackContext{app, lib, play, ui, graphs, view}};
    PlaylistCommands commands{player};
};

TEST_F(PlayerPlaybackTest, NextOnTheLastEntryWithoutLoopKeepsPlaying)
{
    ASSERT_TRUE(commands.Add_Entree_To_PlayList(mp3("first.mp3", 2)));
    ASSERT_TRUE(commands.Add_Entree_To_PlayList(mp3("last.mp3", 2)));
    play.PlayList_Pos = 2;
    player.Play_Track();
    ASSERT_EQ(view.starts.size(), 1u);
    EXPECT_EQ(player.graphState(), GraphState::Running);
    EXPECT_EQ(play.Time_Slider_Max, 2) << "the graph's duration, rounded";
    sleepMs(300);

    player.Next_Track();
    EXPECT_EQ(view.starts.size(), 1u) << "no new start";
    EXPECT_EQ(play.PlayList_Pos, 2);
    EXPECT_EQ(player.graphState(), GraphState::Running);
    EXPECT_GT(player.currentPosition().value_or(0), 0.25) << "the same graph plays on, not restarted";

    // Pause holds, a seek by the time slider lands, Play resumes.
    player.Pause_Track();
    EXPECT_EQ(player.graphState(), GraphState::Paused);
    player.timeSliderClick(1);
    EXPECT_NEAR(player.currentPosition().value_or(-1), 1.0, 0.05);
    sleepMs(200);
    EXPECT_NEAR(player.currentPosition().value_or(-1), 1.0, 0.05);
    player.Play_Track();
    EXPECT_EQ(player.graphState(), GraphState::Running);

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
        ASSERT_TRUE(commands.Add_Non_MP3_To_PlayList(f, f.section('/', -1)));
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
