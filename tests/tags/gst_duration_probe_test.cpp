// The decoder fallback: GStreamer measures a stripped copy of a real file,
// and says nothing about what it cannot decode.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include "platform/gstreamer/gst_duration_probe.h"
#include "tags/track_seconds.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

// Under the sanitizer build: GStreamer's decoders leave allocations of their
// own behind (glib's quark blocks, which it never frees by design, and side
// data of the libav decoder). Their stacks end inside those libraries, which
// have no frame pointers, so only the library can name them.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libglib-2.0.so\n"
           "leak:libavcodec.so\n"
           "leak:libavutil.so\n";
}

TEST(GstDurationProbe, MeasuresTheStrippedCopyOfATrack)
{
    TempEnv env;
    const QString data = env.path("Motörhead/");  // a path beyond ASCII reaches the decoder intact
    QDir().mkpath(data);
    GstDurationProbe probe;
    const QString path = env.path("track.mp3");
    writeFile(path, tag(textFrame("TIT2", "x") + QByteArray(100, '\0')) + QByteArray(50, 'j') + makeMp3({3}));
    EXPECT_EQ(Decoder_Track_Seconds(path, data, &probe), 3);
    EXPECT_FALSE(QFileInfo::exists(data + "CheckTime.mp3"));
    // Without a header of its own the file is measured all the same.
    writeMp3(path, {2, 44100, 2, 128, false, 4, false});
    EXPECT_NEAR(probe.durationSeconds(path).value_or(0), 2.0, 0.2);

    // Not audio, or not there: no answer, no guess.
    writeFile(env.path("noise.mp3"), QByteArray(5000, 'x'));
    EXPECT_FALSE(probe.durationSeconds(env.path("noise.mp3")).has_value());
    EXPECT_FALSE(probe.durationSeconds(env.path("missing.mp3")).has_value());
    EXPECT_EQ(Decoder_Track_Seconds(env.path("noise.mp3"), data, &probe), 0);
    EXPECT_FALSE(QFileInfo::exists(data + "CheckTime.mp3"));

    // The old runtime rounded half to even.
    struct Fixed : DurationProbe {
        double value = 0;
        std::optional<double> durationSeconds(const QString&) override { return value; }
    } fixed;
    fixed.value = 2.5;
    EXPECT_EQ(Decoder_Track_Seconds(path, data, &fixed), 2);
    fixed.value = 3.5;
    EXPECT_EQ(Decoder_Track_Seconds(path, data, &fixed), 4);
}
