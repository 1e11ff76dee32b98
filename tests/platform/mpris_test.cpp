// The media controls over a private session bus: a dbus-daemon of the test's
// own, the service on one connection, the desktop's side on another.
#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>

#include <gtest/gtest.h>

#include "platform/gstreamer/gst_media_graph.h"
#include "platform/mpris/mpris_service.h"
#include "platform/mpris/player_controls.h"
#include "tests/playback/playback_fixture.h"

using namespace sonorit;

namespace {

constexpr const char* Service = "org.mpris.MediaPlayer2.zevsonorit";
constexpr const char* Path = "/org/mpris/MediaPlayer2";
constexpr const char* RootIface = "org.mpris.MediaPlayer2";
constexpr const char* PlayerIface = "org.mpris.MediaPlayer2.Player";

bool waitFor(const std::function<bool()>& done, int ms = 3000)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return done();
}

class FakeControls : public MprisControls {
public:
    void play() override { log << "play"; status_ = MprisStatus::Playing; }
    void pause() override { log << "pause"; status_ = MprisStatus::Paused; }
    void stop() override { log << "stop"; status_ = MprisStatus::Stopped; }
    void next() override { log << "next"; }
    void previous() override { log << "previous"; }
    void raise() override { log << "raise"; }
    MprisStatus status() override { return status_; }
    std::optional<MprisTrack> track() override { return track_; }
    double positionSeconds() override { return 1.25; }
    bool canSeek() override { return seekable; }
    void seekTo(double seconds) override { log << QString("seek %1").arg(seconds); }

    bool seekable = false;

    QStringList log;
    MprisStatus status_ = MprisStatus::Stopped;
    std::optional<MprisTrack> track_;
};

}  // namespace

class ChangeRecorder : public QObject {
    Q_OBJECT
public:
    std::vector<QVariantMap> changes;
public slots:
    void changed(const QString& interface, const QVariantMap& values, const QStringList&)
    {
        if (interface == QLatin1String(PlayerIface))
            changes.push_back(values);
    }
};

namespace {

class MprisTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        if (!QCoreApplication::instance())
            new QCoreApplication(argc_, argv_);
        daemon_ = new QProcess;
        daemon_->start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
        if (daemon_->waitForReadyRead(5000))
            address_ = QString::fromUtf8(daemon_->readLine()).trimmed();
    }
    static void TearDownTestSuite()
    {
        QDBusConnection::disconnectFromBus(QStringLiteral("mpris-service"));
        QDBusConnection::disconnectFromBus(QStringLiteral("mpris-client"));
        daemon_->kill();
        daemon_->waitForFinished();
        delete daemon_;
    }
    void SetUp() override { ASSERT_FALSE(address_.isEmpty()) << "dbus-daemon did not start (package dbus)"; }

    static QDBusConnection serviceBus() { return QDBusConnection::connectToBus(address_, QStringLiteral("mpris-service")); }
    static QDBusConnection clientBus() { return QDBusConnection::connectToBus(address_, QStringLiteral("mpris-client")); }

    // Calls without blocking, so the service in this thread can answer.
    static QDBusMessage call(const char* interface, const char* method, const QVariantList& args = {})
    {
        QDBusMessage m = QDBusMessage::createMethodCall(QLatin1String(Service), QLatin1String(Path),
                                                        QLatin1String(interface), QLatin1String(method));
        m.setArguments(args);
        QDBusPendingCall pending = clientBus().asyncCall(m);
        waitFor([&] { return pending.isFinished(); });
        return pending.reply();
    }
    static QVariant property(const char* interface, const char* name)
    {
        const QDBusMessage reply = call("org.freedesktop.DBus.Properties", "Get",
                                        {QLatin1String(interface), QLatin1String(name)});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
            return {};
        return reply.arguments().first().value<QDBusVariant>().variant();
    }
    static QVariantMap metadata()
    {
        return qdbus_cast<QVariantMap>(property(PlayerIface, "Metadata").value<QDBusArgument>());
    }

    static inline int argc_ = 1;
    static inline char name_[16] = "test_platform";
    static inline char* argv_[2] = {name_, nullptr};
    static inline QProcess* daemon_ = nullptr;
    static inline QString address_;
};

TEST_F(MprisTest, ApplicationIsKnownByItsNameAndIdentity)
{
    FakeControls controls;
    MprisService service(controls, serviceBus());
    ASSERT_TRUE(service.isRegistered());
    const struct {
        const char* interface;
        const char* name;
        QVariant expected;
    } rows[] = {
        {RootIface, "Identity", QStringLiteral("ZEV's MP3 Sonorit")},
        {RootIface, "DesktopEntry", QStringLiteral("zevsonorit")},
        {PlayerIface, "PlaybackStatus", QStringLiteral("Stopped")},
        {PlayerIface, "CanSeek", false},
        {PlayerIface, "Position", qlonglong(1250000)},
    };
    for (const auto& r : rows)
        EXPECT_EQ(property(r.interface, r.name), r.expected) << r.name;

    // A second copy of the program cannot take the name, and says nothing.
    FakeControls other;
    MprisService second(other, QDBusConnection::connectToBus(address_, QStringLiteral("mpris-second")));
    EXPECT_FALSE(second.isRegistered());
    second.update();
    QDBusConnection::disconnectFromBus(QStringLiteral("mpris-second"));
}

TEST_F(MprisTest, CommandsReachThePlayer)
{
    FakeControls controls;
    MprisService service(controls, serviceBus());
    ASSERT_TRUE(service.isRegistered());
    for (const char* method : {"Play", "PlayPause", "PlayPause", "Pause", "Stop", "Next", "Previous"})
        EXPECT_EQ(call(PlayerIface, method).type(), QDBusMessage::ReplyMessage) << method;
    EXPECT_EQ(call(RootIface, "Raise").type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(controls.log, QStringList({"play", "pause", "play", "pause", "stop", "next", "previous", "raise"}));

    // Seeking: by an offset, to a place in the named track; a stale track,
    // a place beyond the end, or a player that cannot seek, nothing; beyond
    // the end by an offset, the next track.
    controls.log.clear();
    controls.track_ = MprisTrack{7, "A", "B", "C", 2.5, {}};
    const QVariant here = QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/zevsonorit/track/7")));
    const QVariant stale = QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/zevsonorit/track/6")));
    call(PlayerIface, "Seek", {qlonglong(500000)});
    controls.seekable = true;
    EXPECT_EQ(property(PlayerIface, "CanSeek"), true);
    call(PlayerIface, "Seek", {qlonglong(500000)});
    call(PlayerIface, "Seek", {qlonglong(-5000000)});
    call(PlayerIface, "SetPosition", {here, qlonglong(2000000)});
    call(PlayerIface, "SetPosition", {stale, qlonglong(1000000)});
    call(PlayerIface, "SetPosition", {here, qlonglong(3000000)});
    call(PlayerIface, "Seek", {qlonglong(2000000)});
    EXPECT_EQ(controls.log, QStringList({"seek 1.75", "seek 0", "seek 2", "next"}));
    controls.track_.reset();

    // The desktop's media keys come from another program.
    QProcess send;
    send.start(QStringLiteral("dbus-send"), {QStringLiteral("--bus=") + address_, QStringLiteral("--print-reply"),
                                             QStringLiteral("--dest=") + QLatin1String(Service), QLatin1String(Path),
                                             QStringLiteral("org.mpris.MediaPlayer2.Player.PlayPause")});
    ASSERT_TRUE(waitFor([&] { return send.state() == QProcess::NotRunning; }, 5000));
    EXPECT_EQ(send.exitCode(), 0) << send.readAllStandardError().toStdString();
    EXPECT_EQ(controls.log.last(), QStringLiteral("play"));
    EXPECT_EQ(property(PlayerIface, "PlaybackStatus"), QStringLiteral("Playing"));
}

TEST_F(MprisTest, MetadataOfTheRunningTrackAndItsChanges)
{
    FakeControls controls;
    MprisService service(controls, serviceBus());
    ASSERT_TRUE(service.isRegistered());
    ChangeRecorder recorder;
    ASSERT_TRUE(clientBus().connect(QLatin1String(Service), QLatin1String(Path),
                                    QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("PropertiesChanged"), &recorder,
                                    SLOT(changed(QString, QVariantMap, QStringList))));

    QVariantMap idle = metadata();
    EXPECT_EQ(idle.value("mpris:trackid").value<QDBusObjectPath>().path(),
              QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack"));
    EXPECT_EQ(idle.size(), 1);

    controls.track_ = MprisTrack{3, "Artist é", "Album", "Title", 2.5, "/data/Playing.jpg"};
    controls.status_ = MprisStatus::Playing;
    service.update();
    service.update();  // nothing new: no second signal
    ASSERT_TRUE(waitFor([&] { return !recorder.changes.empty(); }));
    waitFor([] { return false; }, 100);
    ASSERT_EQ(recorder.changes.size(), 1u);
    EXPECT_EQ(recorder.changes[0].value("PlaybackStatus"), QStringLiteral("Playing"));
    EXPECT_TRUE(recorder.changes[0].contains("Metadata"));

    const QVariantMap m = metadata();
    EXPECT_EQ(QStringList({m.value("mpris:trackid").value<QDBusObjectPath>().path(),
                           QString::number(m.value("mpris:length").toLongLong()),
                           m.value("xesam:artist").toStringList().join('+'), m.value("xesam:album").toString(),
                           m.value("xesam:title").toString(), m.value("mpris:artUrl").toString()}),
              QStringList({"/org/zevsonorit/track/3", "2500000", "Artist é", "Album", "Title",
                           "file:///data/Playing.jpg"}));

    controls.status_ = MprisStatus::Paused;
    service.update();
    ASSERT_TRUE(waitFor([&] { return recorder.changes.size() == 2; }));
    EXPECT_EQ(recorder.changes[1].value("PlaybackStatus"), QStringLiteral("Paused"));
    EXPECT_FALSE(recorder.changes[1].contains("Metadata")) << "only what changed is sent";
}

TEST_F(MprisTest, WithoutASessionBusNothingHappens)
{
    // No address, no runtime folder with a bus in it, no display to start
    // one for: the session bus cannot be found.
    QTemporaryDir runtime;
    const QByteArray saved[] = {qgetenv("DBUS_SESSION_BUS_ADDRESS"), qgetenv("DISPLAY"), qgetenv("XDG_RUNTIME_DIR")};
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("DISPLAY");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    FakeControls controls;
    MprisService service(controls);
    EXPECT_FALSE(service.isRegistered());
    service.update();
    EXPECT_TRUE(controls.log.isEmpty());
    const char* names[] = {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "XDG_RUNTIME_DIR"};
    for (int i = 0; i < 3; ++i)
        saved[i].isNull() ? qunsetenv(names[i]) : qputenv(names[i], saved[i]);
}

// What the window does: its view passes the player's news on.
struct ForwardingView : PlayerView {
    PlayerMprisControls* controls = nullptr;
    void trackStarted(const TrackStart& s) override { controls->trackStarted(s); }
    void showPlayCover(const QString& path) override { controls->coverShown(path); }
    void playbackStopped() override { controls->stopped(); }
};

struct FakeSinkGraphs : GstMediaGraphFactory {
    FakeSinkGraphs() : GstMediaGraphFactory(QStringLiteral("fakesink")) {}
};

TEST_F(MprisTest, MediaKeysDriveTheRealPlayer)
{
    test::PlayerRig<FakeSinkGraphs, ForwardingView> rig;
    Player& player = rig.player;
    PlayerMprisControls controls(player);
    rig.view.controls = &controls;
    MprisService service(controls, serviceBus());
    ASSERT_TRUE(service.isRegistered());
    for (const char* title : {"First", "Second"}) {
        const QString path = rig.env.path(QString::fromLatin1(title) + ".mp3");
        ASSERT_TRUE(test::writeTaggedMp3(path, {"The Artist", "The Album", "1", title, "", ""}, {2}));
        ASSERT_TRUE(rig.cmds.Add_Entree_To_PlayList(path));
    }

    call(PlayerIface, "PlayPause");
    EXPECT_EQ(player.graphState(), GraphState::Running);
    EXPECT_EQ(property(PlayerIface, "PlaybackStatus"), QStringLiteral("Playing"));
    QVariantMap m = metadata();
    EXPECT_EQ(m.value("xesam:title").toString(), QStringLiteral("First"));
    EXPECT_EQ(m.value("mpris:length").toLongLong(), 2000000);

    call(PlayerIface, "Next");
    m = metadata();
    EXPECT_EQ(m.value("xesam:title").toString(), QStringLiteral("Second"));
    call(PlayerIface, "SetPosition", {m.value("mpris:trackid"), qlonglong(1000000)});
    EXPECT_NEAR(property(PlayerIface, "Position").toLongLong(), 1000000, 100000);
    call(PlayerIface, "PlayPause");
    EXPECT_EQ(player.graphState(), GraphState::Paused);
    EXPECT_EQ(property(PlayerIface, "PlaybackStatus"), QStringLiteral("Paused"));
    call(PlayerIface, "Play");
    EXPECT_EQ(player.graphState(), GraphState::Running);
    call(PlayerIface, "Previous");
    EXPECT_EQ(metadata().value("xesam:title").toString(), QStringLiteral("First"));
    call(PlayerIface, "Stop");
    EXPECT_FALSE(player.hasGraph());
    EXPECT_EQ(property(PlayerIface, "PlaybackStatus"), QStringLiteral("Stopped"));
    EXPECT_EQ(metadata().size(), 1) << "no track";
}

}  // namespace

#include "mpris_test.moc"
