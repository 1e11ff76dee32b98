#include "player_controls.h"

#include <cmath>

namespace sonorit {

namespace {
// Library tracks count apart from the playlist's entries.
constexpr int LibraryIds = 1000000;
}

void PlayerMprisControls::trackStarted(const TrackStart& start)
{
    MprisTrack t;
    t.id = start.library ? LibraryIds + start.position : start.entry;
    t.artist = start.artist;
    t.album = start.album;
    t.title = start.title;
    t.seconds = start.seconds;
    // The cover follows the start; keep the old one until it comes.
    if (track_)
        t.coverPath = track_->coverPath;
    track_ = t;
}

void PlayerMprisControls::coverShown(const QString& jpegPath)
{
    if (track_)
        track_->coverPath = jpegPath;
}

void PlayerMprisControls::stopped() { track_.reset(); }

void PlayerMprisControls::play()
{
    PlaybackState& s = player_.state();
    // Play on a stopped player with a list starts its current entry, the
    // first when none is current yet.
    if (player_.graphState() == GraphState::Stopped && s.PlayList_Count > 0 && s.PlayList_Pos == 0)
        s.PlayList_Pos = 1;
    if (player_.graphState() != GraphState::Running)
        player_.Play_Track();
}

void PlayerMprisControls::pause()
{
    if (player_.graphState() == GraphState::Running)
        player_.Pause_Track();
}

void PlayerMprisControls::stop() { player_.Stop_Track(); }
void PlayerMprisControls::next() { player_.Next_Track(); }
void PlayerMprisControls::previous() { player_.Previous_Track(); }

void PlayerMprisControls::raise()
{
    if (raise_)
        raise_();
}

MprisStatus PlayerMprisControls::status()
{
    if (!player_.state().Is_Playing)
        return MprisStatus::Stopped;
    switch (player_.graphState()) {
    case GraphState::Running:
        return MprisStatus::Playing;
    case GraphState::Paused:
        return MprisStatus::Paused;
    case GraphState::Stopped:
        break;
    }
    return MprisStatus::Stopped;
}

std::optional<MprisTrack> PlayerMprisControls::track()
{
    if (!player_.state().Is_Playing)
        return std::nullopt;
    return track_;
}

double PlayerMprisControls::positionSeconds() { return player_.currentPosition().value_or(0); }

bool PlayerMprisControls::canSeek() { return player_.state().Is_Playing; }

// Through the time slider, as a click on it seeks: whole seconds.
void PlayerMprisControls::seekTo(double seconds) { player_.timeSliderClick(int(std::lround(seconds))); }

}  // namespace sonorit
