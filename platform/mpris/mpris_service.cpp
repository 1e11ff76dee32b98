#include "mpris_service.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QUrl>
#include <cmath>

#include "platform/mpris/mpris_adaptors.h"

namespace sonorit {

namespace {
constexpr const char* PlayerInterface = "org.mpris.MediaPlayer2.Player";
}

QString mprisTrackPath(const MprisTrack& track)
{
    return QStringLiteral("/org/zevsonorit/track/%1").arg(std::max(track.id, 0));
}

QVariantMap mprisMetadata(const std::optional<MprisTrack>& track)
{
    QVariantMap m;
    if (!track) {
        m.insert(QStringLiteral("mpris:trackid"),
                 QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack"))));
        return m;
    }
    m.insert(QStringLiteral("mpris:trackid"),
             QVariant::fromValue(QDBusObjectPath(mprisTrackPath(*track))));
    m.insert(QStringLiteral("mpris:length"), qlonglong(std::llround(std::max(track->seconds, 0.0) * 1e6)));
    if (!track->artist.isEmpty())
        m.insert(QStringLiteral("xesam:artist"), QStringList{track->artist});
    if (!track->album.isEmpty())
        m.insert(QStringLiteral("xesam:album"), track->album);
    if (!track->title.isEmpty())
        m.insert(QStringLiteral("xesam:title"), track->title);
    if (!track->coverPath.isEmpty())
        m.insert(QStringLiteral("mpris:artUrl"), QUrl::fromLocalFile(track->coverPath).toString());
    return m;
}

MprisService::MprisService(MprisControls& controls, QDBusConnection bus, QObject* parent)
    : QObject(parent), controls_(controls), bus_(std::move(bus))
{
    if (!bus_.isConnected())
        return;
    new MprisRootAdaptor(this);
    new MprisPlayerAdaptor(this);
    // The object first: a client that sees the name appear may ask at once.
    registered_ = bus_.registerObject(QString::fromLatin1(ObjectPath), this, QDBusConnection::ExportAdaptors)
                  && bus_.registerService(QString::fromLatin1(ServiceName));
    if (!registered_) {
        // Another copy of the program holds the name: the desktop talks to it.
        bus_.unregisterObject(QString::fromLatin1(ObjectPath));
        return;
    }
    lastStatus_ = playbackStatus();
    lastMetadata_ = metadata();
}

MprisService::~MprisService()
{
    if (registered_) {
        bus_.unregisterService(QString::fromLatin1(ServiceName));
        bus_.unregisterObject(QString::fromLatin1(ObjectPath));
    }
}

QString MprisService::playbackStatus()
{
    switch (controls_.status()) {
    case MprisStatus::Playing:
        return QStringLiteral("Playing");
    case MprisStatus::Paused:
        return QStringLiteral("Paused");
    case MprisStatus::Stopped:
        break;
    }
    return QStringLiteral("Stopped");
}

QVariantMap MprisService::metadata() { return mprisMetadata(controls_.track()); }

void MprisService::update()
{
    if (!registered_)
        return;
    QVariantMap changed;
    const QString status = playbackStatus();
    if (status != lastStatus_) {
        lastStatus_ = status;
        changed.insert(QStringLiteral("PlaybackStatus"), status);
    }
    const QVariantMap meta = metadata();
    if (meta != lastMetadata_) {
        lastMetadata_ = meta;
        changed.insert(QStringLiteral("Metadata"), meta);
    }
    if (!changed.isEmpty())
        emitChanged(PlayerInterface, changed);
}

void MprisService::emitChanged(const char* interface, const QVariantMap& changed)
{
    QDBusMessage signal = QDBusMessage::createSignal(QString::fromLatin1(ObjectPath),
                                                     QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(interface) << changed << QStringList();
    bus_.send(signal);
}

}  // namespace sonorit
