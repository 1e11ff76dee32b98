#pragma once
// The player as the desktop's media controls see it. The window tells it
// what its PlayerView hears (a track started, the cover shown, playing
// stopped) and calls MprisService::update() afterwards.
#include <functional>

#include "platform/mpris/mpris_controls.h"
#include "playback/player.h"

namespace sonorit {

class PlayerMprisControls : public MprisControls {
public:
    explicit PlayerMprisControls(Player& player, std::function<void()> raise = {})
        : player_(player), raise_(std::move(raise))
    {
    }

    void trackStarted(const TrackStart& start);
    void coverShown(const QString& jpegPath);  // "" for the built-in picture
    void stopped();

    void play() override;
    void pause() override;
    void stop() override;
    void next() override;
    void previous() override;
    void raise() override;
    MprisStatus status() override;
    std::optional<MprisTrack> track() override;
    double positionSeconds() override;
    bool canSeek() override;
    void seekTo(double seconds) override;

private:
    Player& player_;
    std::function<void()> raise_;
    std::optional<MprisTrack> track_;
};

}  // namespace sonorit
