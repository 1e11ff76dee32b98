// The decoder of sonorit-cli as a module of its own: GStreamer and its
// libraries are loaded only by a command that meets a file whose length must
// be measured by decoding, so that every other command starts without them.
#include <QString>

#include "platform/gstreamer/gst_duration_probe.h"

extern "C" __attribute__((visibility("default"))) bool sonorit_decoder_duration(const char* utf8Path, int timeoutSeconds,
                                                                             double* seconds)
{
    sonorit::GstDurationProbe probe(timeoutSeconds);
    const auto duration = probe.durationSeconds(QString::fromUtf8(utf8Path));
    if (duration)
        *seconds = *duration;
    return duration.has_value();
}
