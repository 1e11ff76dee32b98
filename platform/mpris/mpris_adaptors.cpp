#include "mpris_adaptors.h"

#include <cmath>

#include "platform/mpris/mpris_service.h"

namespace sonorit {

MprisRootAdaptor::MprisRootAdaptor(MprisService* service) : QDBusAbstractAdaptor(service), service_(service) {}

void MprisRootAdaptor::Raise() { service_->controls().raise(); }

MprisPlayerAdaptor::MprisPlayerAdaptor(MprisService* service) : QDBusAbstractAdaptor(service), service_(service)
{
    // Properties are read live; their changes go out through update().
    setAutoRelaySignals(false);
}

QString MprisPlayerAdaptor::playbackStatus() const { return service_->playbackStatus(); }
QVariantMap MprisPlayerAdaptor::metadata() const { return service_->metadata(); }

qlonglong MprisPlayerAdaptor::position() const
{
    return qlonglong(std::llround(std::max(service_->controls().positionSeconds(), 0.0) * 1e6));
}

bool MprisPlayerAdaptor::canSeek() const { return service_->controls().canSeek(); }

void MprisPlayerAdaptor::Seek(qlonglong offsetUs)
{
    MprisControls& c = service_->controls();
    const std::optional<MprisTrack> track = c.track();
    if (!track || !c.canSeek())
        return;
    const double target = std::max(c.positionSeconds() + double(offsetUs) / 1e6, 0.0);
    // Beyond the end means the next track.
    if (target > track->seconds) {
        Next();
        return;
    }
    c.seekTo(target);
    emit Seeked(position());
}

void MprisPlayerAdaptor::SetPosition(const QDBusObjectPath& trackId, qlonglong positionUs)
{
    MprisControls& c = service_->controls();
    const std::optional<MprisTrack> track = c.track();
    // A request for a track that has since changed is stale.
    if (!track || !c.canSeek() || trackId.path() != mprisTrackPath(*track) || positionUs < 0
        || double(positionUs) / 1e6 > track->seconds)
        return;
    c.seekTo(double(positionUs) / 1e6);
    emit Seeked(position());
}

// Every command is followed by update(), so a client that asked sees the
// new status in the signal that answers it.
void MprisPlayerAdaptor::Play()
{
    service_->controls().play();
    service_->update();
}

void MprisPlayerAdaptor::Pause()
{
    service_->controls().pause();
    service_->update();
}

void MprisPlayerAdaptor::PlayPause()
{
    if (service_->controls().status() == MprisStatus::Playing)
        service_->controls().pause();
    else
        service_->controls().play();
    service_->update();
}

void MprisPlayerAdaptor::Stop()
{
    service_->controls().stop();
    service_->update();
}

void MprisPlayerAdaptor::Next()
{
    service_->controls().next();
    service_->update();
}

void MprisPlayerAdaptor::Previous()
{
    service_->controls().previous();
    service_->update();
}

}  // namespace sonorit
