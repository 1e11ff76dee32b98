#pragma once
// The play verb's report: one JSON line on standard output for each event
// of the player that a script follows.
#include "playback/player_view.h"

namespace sonorit::cli {

class PlayEvents : public PlayerView {
public:
    void trackStarted(const TrackStart& start) override;
    void trackSkipped(int entry) override;
    void trackEnded(int entry) override;
    void positionPolled(double seconds) override;
    // The end of the whole run, not of one track.
    void finished();
};

}  // namespace sonorit::cli
