#pragma once
// The player on the session bus as "org.mpris.MediaPlayer2.zevsonorit", so
// that media keys and the desktop's media controls reach it. Without a bus
// it does nothing and says nothing.
#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include "platform/mpris/mpris_controls.h"

namespace sonorit {

class MprisService : public QObject {
    Q_OBJECT
public:
    static constexpr const char* ServiceName = "org.mpris.MediaPlayer2.zevsonorit";
    static constexpr const char* ObjectPath = "/org/mpris/MediaPlayer2";

    explicit MprisService(MprisControls& controls, QDBusConnection bus = QDBusConnection::sessionBus(),
                          QObject* parent = nullptr);
    ~MprisService() override;

    bool isRegistered() const { return registered_; }
    // Publishes what changed since the last call (status, track) to the
    // listeners; call it after the player changed, or on a timer.
    void update();

    MprisControls& controls() { return controls_; }
    QString playbackStatus();
    QVariantMap metadata();

private:
    void emitChanged(const char* interface, const QVariantMap& changed);

    MprisControls& controls_;
    QDBusConnection bus_;
    bool registered_ = false;
    QString lastStatus_;
    QVariantMap lastMetadata_;
};

// The D-Bus value of a track's metadata, and its track id.
QVariantMap mprisMetadata(const std::optional<MprisTrack>& track);
QString mprisTrackPath(const MprisTrack& track);

}  // namespace sonorit
