#pragma once
// The desktop's media controls driving the player of the window, and what
// they are shown of the running track.
#include <functional>

#include "platform/mpris/mpris_controls.h"

namespace sonorit {
class Player;
}

namespace sonorit::ui {

class QtPlayerView;

class MprisBridge : public MprisControls {
public:
    MprisBridge(Player& player, const QtPlayerView& view, std::function<void()> raise);

    void play() override;
    void pause() override;
    void stop() override;
    void next() override;
    void previous() override;
    void raise() override;
    MprisStatus status() override;
    std::optional<MprisTrack> track() override;
    double positionSeconds() override;

private:
    Player& player_;
    const QtPlayerView& view_;
    std::function<void()> raise_;
    int id_ = 0;
    QString lastSource_;
};

}  // namespace sonorit::ui
