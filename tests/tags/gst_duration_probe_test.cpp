// The decoder fallback measures real files and says nothing about others.
#include <gtest/gtest.h>

#include <QDir>

#include "platform/gstreamer/gst_duration_probe.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(GstDurationProbe, MeasuresDecodableFilesAndDeclinesTheRest)
{
    TempEnv env;
    GstDurationProbe probe;

    Mp3Spec cbr;
    cbr.seconds = 3;
    ASSERT_TRUE(writeMp3(env.path("cbr.mp3"), cbr));
    const auto seconds = probe.durationSeconds(env.path("cbr.mp3"));
    ASSERT_TRUE(seconds.has_value());
    EXPECT_NEAR(*seconds, 3.0, 0.1);

    // A file with no header of its own is measured all the same, and a
    // path beyond ASCII reaches the decoder intact.
    Mp3Spec bare = cbr;
    bare.seconds = 2;
    bare.writeXing = false;
    QDir().mkpath(env.path("Motörhead"));
    ASSERT_TRUE(writeMp3(env.path("Motörhead/bare.mp3"), bare));
    const auto bareSeconds = probe.durationSeconds(env.path("Motörhead/bare.mp3"));
    ASSERT_TRUE(bareSeconds.has_value());
    EXPECT_NEAR(*bareSeconds, 2.0, 0.2);

    writeFile(env.path("noise.mp3"), QByteArray(5000, 'x'));
    EXPECT_FALSE(probe.durationSeconds(env.path("noise.mp3")).has_value());
    EXPECT_FALSE(probe.durationSeconds(env.path("missing.mp3")).has_value());
}
