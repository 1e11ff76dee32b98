// The GStreamer media graph playing real files into a fake sink that keeps
// real time.
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "platform/gstreamer/gst_media_graph.h"
#include "tests/platform/wma_maker.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"
#include "tests/support/wav_maker.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

void sleepMs(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

class MediaGraphTest : public ::testing::Test {
protected:
    QString file(const QString& name) const { return dir_.filePath(name); }
    QString mp3(const QString& name, double seconds)
    {
        Mp3Recipe recipe;
        recipe.seconds = seconds;
        const QString path = file(name);
        EXPECT_TRUE(writeMp3(path, recipe));
        return path;
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
    EXPECT_LT(played, 0.9) << "the fake sink must keep real time";

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
    } volumes[] = {{0, 1.0}, {-2000, 0.1}, {-7000, 0.000316228}, {-10000, 0.00001}, {2000, 10.0}, {6000, 10.0}};
    for (const auto& v : volumes)
        EXPECT_NEAR(linearVolume(v.hundredthsDb), v.linear, v.linear * 1e-4) << v.hundredthsDb;

    auto g = graph();
    ASSERT_TRUE(g && g->renderFile(mp3("v.mp3", 1)) && g->run());
    for (int v : {0, -3000, -7000})
        EXPECT_TRUE(g->setVolume(v)) << v;
    for (int b : {-10000, -5000, 0, 10000, 20000})
        EXPECT_TRUE(g->setBalance(b)) << b;
    EXPECT_EQ(g->state(100), GraphState::Running);
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
}

TEST_F(MediaGraphTest, WavAndWmaPlay)
{
    ASSERT_TRUE(writeWav(file("tone.wav"), 1.0));
    QStringList files{file("tone.wav")};
    if (writeWma(file("tone.wma"), 1.0))
        files << file("tone.wma");
    else
        ADD_FAILURE() << "no WMA encoder: install gstreamer1.0-libav";
    for (const QString& path : files) {
        auto g = graph();
        ASSERT_TRUE(g && g->renderFile(path)) << path.toStdString();
        EXPECT_NEAR(g->duration().value_or(0), 1.0, 0.1) << path.toStdString();
        ASSERT_TRUE(g->run());
        sleepMs(300);
        EXPECT_GT(g->position().value_or(0), 0.1) << path.toStdString();
        EXPECT_EQ(g->state(20), GraphState::Running) << path.toStdString();
    }
}

}  // namespace
