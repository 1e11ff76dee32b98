#pragma once
// The decoder's duration through GStreamer: the file is prerolled through
// the same decoders that playback uses and asked for its length.
#include "tags/duration_port.h"

namespace sonorit {

class GstDurationProbe : public DurationProbe {
public:
    explicit GstDurationProbe(int timeoutSeconds = 10) : timeoutSeconds_(timeoutSeconds) {}
    std::optional<double> durationSeconds(const QString& path) override;

private:
    int timeoutSeconds_;
};

// Initialises GStreamer once per process; false if it cannot run here.
bool ensureGstreamer();

}  // namespace sonorit
