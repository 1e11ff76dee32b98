#include "mpris_bridge.h"

#include <QFileInfo>

#include "playback/covers.h"
#include "playback/player.h"
#include "qt_player_view.h"

namespace sonorit::ui {

MprisBridge::MprisBridge(Player& player, const QtPlayerView& view, std::function<void()> raise)
    : player_(player), view_(view), raise_(std::move(raise))
{
}

// Play resumes a paused track and starts the list when nothing runs, as the
// Play button does; PlayPause reaches pause() while playing.
void MprisBridge::play() { player_.Play_Track(); }

void MprisBridge::pause()
{
    if (player_.graphState() == GraphState::Running)
        player_.Pause_Track();
}

void MprisBridge::stop() { player_.Stop_Track(); }
void MprisBridge::next() { player_.Next_Track(); }
void MprisBridge::previous() { player_.Previous_Track(); }

void MprisBridge::raise()
{
    if (raise_)
        raise_();
}

MprisStatus MprisBridge::status()
{
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

std::optional<MprisTrack> MprisBridge::track()
{
    if (!view_.playing() || !player_.state().Is_Playing)
        return std::nullopt;
    const TrackStart& start = view_.lastStart();
    if (start.source != lastSource_) {
        lastSource_ = start.source;
        ++id_;
    }
    MprisTrack t;
    t.id = id_;
    t.artist = start.artist;
    t.album = start.album;
    t.title = start.title;
    t.seconds = start.seconds;
    const QString cover = Playing_Cover_Path(player_.context().app);
    if (QFileInfo::exists(cover))
        t.coverPath = cover;
    return t;
}

double MprisBridge::positionSeconds() { return player_.currentPosition().value_or(0); }

}  // namespace sonorit::ui
