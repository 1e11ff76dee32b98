// The GStreamer media graph playing real files into a fake sink that keeps
// real time, alone and under the player: what only a real graph can tell the
// player, the length and the playing of the formats played without a copy.
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <chrono>
#include <cmath>
#include <mutex>
#include <thread>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "platform/gstreamer/gst_media_graph.h"
#include "tests/platform/wma_maker.h"
#include "tests/playback/playback_fixture.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"
#include "tests/support/wav_maker.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

void sleepMs(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

// Root mean square of each of two channels of what passes the sink's pad.
class ChannelMeter {
public:
    explicit ChannelMeter(GstElement* sink)
    {
        GstPad* pad = gst_element_get_static_pad(sink, "sink");
        gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, &ChannelMeter::onBuffer, this, nullptr);
        gst_object_unref(pad);
    }
    void reset()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        sums_[0] = sums_[1] = 0;
        frames_ = 0;
    }
    std::pair<double, double> rms()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (frames_ == 0)
            return {0, 0};
        return {std::sqrt(sums_[0] / frames_), std::sqrt(sums_[1] / frames_)};
    }

private:
    static GstPadProbeReturn onBuffer(GstPad* pad, GstPadProbeInfo* info, gpointer self)
    {
        static_cast<ChannelMeter*>(self)->add(pad, GST_PAD_PROBE_INFO_BUFFER(info));
        return GST_PAD_PROBE_OK;
    }
    void add(GstPad* pad, GstBuffer* buffer)
    {
        GstCaps* caps = gst_pad_get_current_caps(pad);
        if (!caps)
            return;
        const GstStructure* st = gst_caps_get_structure(caps, 0);
        const QString format = QString::fromLatin1(gst_structure_get_string(st, "format"));
        int channels = 0;
        gst_structure_get_int(st, "channels", &channels);
        gst_caps_unref(caps);
        GstMapInfo map;
        if (channels != 2 || !gst_buffer_map(buffer, &map, GST_MAP_READ))
            return;
        std::lock_guard<std::mutex> lock(mutex_);
        if (format == QLatin1String("F32LE")) {
            const auto* v = reinterpret_cast<const float*>(map.data);
            for (gsize i = 0; i + 1 < map.size / sizeof(float); i += 2, ++frames_)
                sums_[0] += double(v[i]) * v[i], sums_[1] += double(v[i + 1]) * v[i + 1];
        } else if (format == QLatin1String("S16LE")) {
            const auto* v = reinterpret_cast<const qint16*>(map.data);
            for (gsize i = 0; i + 1 < map.size / sizeof(qint16); i += 2, ++frames_)
                sums_[0] += std::pow(v[i] / 32768.0, 2), sums_[1] += std::pow(v[i + 1] / 32768.0, 2);
        }
        gst_buffer_unmap(buffer, &map);
    }

    std::mutex mutex_;
    double sums_[2] = {0, 0};
    double frames_ = 0;
};

class MediaGraphTest : public ::testing::Test {
protected:
    QString file(const QString& name) const { return dir_.filePath(name); }
    QString mp3(const QString& name, double seconds)
    {
        EXPECT_TRUE(writeMp3(file(name), {seconds}));
        return file(name);
    }
    std::unique_ptr<MediaGraph> graph() { return factory_.create(); }

    QTemporaryDir dir_;
    GstMediaGraphFactory factory_{QStringLiteral("fakesink")};
};

TEST_F(MediaGraphTest, RunsPausesSeeksAndStopsAnMp3)
{
    auto g = graph();
    ASSERT_TRUE(g);
    EXPECT_FALSE(g->state(20)) << "an empty graph cannot tell its state";
    ASSERT_TRUE(g->renderFile(mp3("a.mp3", 2)));
    EXPECT_EQ(g->state(20), GraphState::Paused) << "rendered means prerolled";
    ASSERT_TRUE(g->duration());
    EXPECT_NEAR(*g->duration(), 2.0, 0.05);

    ASSERT_TRUE(g->run());
    EXPECT_EQ(g->state(20), GraphState::Running);
    sleepMs(500);
    const double played = g->position().value_or(-1);
    EXPECT_GT(played, 0.3);
    EXPECT_LT(played, 1.5) << "the fake sink must keep real time";

    ASSERT_TRUE(g->pause());
    EXPECT_EQ(g->state(200), GraphState::Paused);
    const double held = g->position().value_or(-1);
    sleepMs(300);
    EXPECT_NEAR(g->position().value_or(-1), held, 0.02) << "pause holds the position";

    ASSERT_TRUE(g->setPosition(1.5));
    EXPECT_NEAR(g->position().value_or(-1), 1.5, 0.05) << "a paused seek lands";
    ASSERT_TRUE(g->run());
    ASSERT_TRUE(g->setPosition(0.25));
    EXPECT_NEAR(g->position().value_or(-1), 0.25, 0.1) << "a running seek lands";
    EXPECT_EQ(g->state(200), GraphState::Running);

    ASSERT_TRUE(g->stop());
    EXPECT_EQ(g->state(200), GraphState::Stopped);
    ASSERT_TRUE(g->run()) << "a stopped graph plays again";
    EXPECT_EQ(g->state(2000), GraphState::Running);
}

TEST_F(MediaGraphTest, PlaysToTheEndAndIsDroppedWhileRunning)
{
    auto g = graph();
    ASSERT_TRUE(g && g->renderFile(mp3("short.mp3", 0.5)));
    ASSERT_TRUE(g->run());
    sleepMs(900);
    // The player sees the end only by position against duration.
    EXPECT_GE(g->position().value_or(0) + 0.05, g->duration().value_or(99));
    EXPECT_EQ(g->state(20), GraphState::Running);

    auto playing = graph();
    ASSERT_TRUE(playing && playing->renderFile(mp3("long.mp3", 2)) && playing->run());
    sleepMs(100);
    QElapsedTimer t;
    t.start();
    playing.reset();
    EXPECT_LT(t.elapsed(), 500) << "a running graph is dropped at the start of every track";
}

TEST_F(MediaGraphTest, VolumeAndBalanceAreTakenWhilePlaying)
{
    const struct {
        int hundredthsDb;
        double linear;
    } volumes[] = {{0, 1.0}, {-2000, 0.1}, {-10000, 0.00001}, {6000, 10.0}};  // capped at +20 dB
    for (const auto& v : volumes)
        EXPECT_NEAR(linearVolume(v.hundredthsDb), v.linear, v.linear * 1e-4) << v.hundredthsDb;

    // What reaches the sink, channel by channel, after the change settled.
    GstMediaGraph g(QStringLiteral("fakesink"));
    ASSERT_TRUE(g.audioSink() && g.renderFile(mp3("v.mp3", 2)));
    ChannelMeter meter(g.audioSink());
    auto measure = [&] {
        sleepMs(150);
        meter.reset();
        sleepMs(250);
        return meter.rms();
    };
    ASSERT_TRUE(g.run());
    const auto full = measure();
    ASSERT_GT(full.first, 0.01);
    EXPECT_NEAR(full.first, full.second, full.first * 0.05) << "centred";

    ASSERT_TRUE(g.setBalance(-10000));
    auto left = measure();
    EXPECT_NEAR(left.first, full.first, full.first * 0.1);
    EXPECT_LT(left.second, full.second * 0.01) << "full left silences the right";
    ASSERT_TRUE(g.setBalance(5000));
    auto half = measure();
    EXPECT_NEAR(half.first, full.first * 0.5, full.first * 0.05) << "a balance lowers the far side only";
    EXPECT_NEAR(half.second, full.second, full.second * 0.1);
    ASSERT_TRUE(g.setBalance(0));

    ASSERT_TRUE(g.setVolume(-2000));
    const auto quiet = measure();
    EXPECT_NEAR(quiet.first, full.first * 0.1, full.first * 0.01) << "-20 dB";
    EXPECT_EQ(g.state(100), GraphState::Running);
}

TEST_F(MediaGraphTest, FilesThatCannotPlayFailToRender)
{
    writeFile(file("noise.mp3"), QByteArray(20000, '\x5a'));
    writeFile(file("empty.mp3"), {});
    writeFile(file("text.wav"), "RIFF not really");
    QDir(dir_.path()).mkpath(QStringLiteral("folder.mp3"));
    for (const char* name : {"noise.mp3", "empty.mp3", "text.wav", "folder.mp3", "missing.mp3"}) {
        auto g = graph();
        ASSERT_TRUE(g);
        EXPECT_FALSE(g->renderFile(file(QString::fromLatin1(name)))) << name;
        EXPECT_FALSE(g->state(20)) << name;
        EXPECT_FALSE(g->run()) << name;
        EXPECT_FALSE(g->position()) << name;
    }
    EXPECT_FALSE(GstMediaGraphFactory(QStringLiteral("no_such_sink_element")).create());

    // An error while playing: the state fails, and the graph stands at its
    // end so that the player's end test moves on.
    GstMediaGraph g(QStringLiteral("fakesink"));
    ASSERT_TRUE(g.renderFile(mp3("cut.mp3", 2)) && g.run());
    GError* error = g_error_new_literal(GST_STREAM_ERROR, GST_STREAM_ERROR_DECODE, "cut short");
    gst_element_post_message(g.audioSink(), gst_message_new_error(GST_OBJECT(g.audioSink()), error, nullptr));
    g_error_free(error);
    EXPECT_FALSE(g.state(20));
    EXPECT_NEAR(g.position().value_or(0), 2.0, 0.05);
    EXPECT_NEAR(g.duration().value_or(0), 2.0, 0.05);
}

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
