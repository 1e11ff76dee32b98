#pragma once
// What the desktop's media controls may do with the player and what they
// are shown of it. The window hands its player in through this small
// interface, so the D-Bus side needs no window and tests need no player.
#include <QString>
#include <optional>

namespace sonorit {

enum class MprisStatus { Stopped, Paused, Playing };

struct MprisTrack {
    int id = 0;           // tells tracks apart; the same track started again keeps it
    QString artist, album, title;
    double seconds = 0;   // length
    QString coverPath;    // a picture file; empty for none

    bool operator==(const MprisTrack& o) const
    {
        return id == o.id && artist == o.artist && album == o.album && title == o.title && seconds == o.seconds
               && coverPath == o.coverPath;
    }
};

class MprisControls {
public:
    virtual ~MprisControls() = default;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void stop() = 0;
    virtual void next() = 0;
    virtual void previous() = 0;
    // Bring the window to the front.
    virtual void raise() {}

    virtual MprisStatus status() = 0;
    // Nothing while no track is loaded.
    virtual std::optional<MprisTrack> track() = 0;
    virtual double positionSeconds() { return 0; }
    // Moving within the running track.
    virtual bool canSeek() { return false; }
    virtual void seekTo(double /*seconds*/) {}
};

}  // namespace sonorit
