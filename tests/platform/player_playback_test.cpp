// The player with the real GStreamer graph into a fake sink that keeps real
// time: what only a real graph can tell, the length and the playing of the
// formats played without a copy. (The stepping rules are the fake graph's
// tests; the graph's own behaviour the media graph's.)
#include <gtest/gtest.h>

#include "platform/gstreamer/gst_media_graph.h"
#include "tests/platform/wma_maker.h"
#include "tests/playback/playback_fixture.h"
#include "tests/support/wav_maker.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct FakeSinkGraphs : GstMediaGraphFactory {
    FakeSinkGraphs() : GstMediaGraphFactory(QStringLiteral("fakesink")) {}
};

struct PlayerPlaybackTest : ::testing::Test, PlayerRig<FakeSinkGraphs, RecordingView> {};

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
