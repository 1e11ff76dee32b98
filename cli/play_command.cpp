// sonorit-cli play [--loop] [--random] [--seconds N] [--audio-sink ELEMENT]
// FILE...|LIST.m3u: plays through the real engine, the main timer's player
// work on a 200 ms timer, and reports each event as a JSON line.
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>
#include <algorithm>

#include "cli/cli_context.h"
#include "cli/play_events.h"
#include "cli/play_ui.h"
#include "platform/gstreamer/gst_media_graph.h"
#include "playback/player.h"
#include "playback/playlist_commands.h"
#include "playback/playlist_files.h"
#include "shell/helpers.h"
#include "shell/main_timer.h"

namespace sonorit::cli {

namespace {

struct PlayOptions {
    bool loop = false;
    bool random = false;
    int seconds = -1;  // -1: until the list has played
    QString sink;      // "": the desktop's
    QStringList files;
};

bool parse(const QStringList& args, PlayOptions& o)
{
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        auto value = [&](const char* name, QString& v) {
            const QString n = QLatin1String(name);
            if (a == n && i + 1 < args.size()) {
                v = args[++i];
                return true;
            }
            if (a.startsWith(n + QLatin1Char('='))) {
                v = a.mid(n.size() + 1);
                return true;
            }
            return false;
        };
        QString v;
        if (a == QLatin1String("--loop")) {
            o.loop = true;
        } else if (a == QLatin1String("--random")) {
            o.random = true;
        } else if (value("--seconds", v)) {
            bool ok = false;
            o.seconds = v.toInt(&ok);
            if (!ok || o.seconds < 0)
                return false;
        } else if (value("--audio-sink", v)) {
            o.sink = v;
        } else if (a.startsWith(QLatin1String("--"))) {
            return false;
        } else {
            o.files << QFileInfo(a).absoluteFilePath();
        }
    }
    if (o.files.isEmpty())
        return false;
    // A list plays alone: its entries are the playlist.
    const bool hasList = std::any_of(o.files.begin(), o.files.end(),
                                     [](const QString& f) { return f.toLower().endsWith(QLatin1String(".m3u")); });
    return !hasList || o.files.size() == 1;
}

bool isNonMp3(const QString& path)
{
    const QString ext = path.right(3).toLower();
    return ext == QLatin1String("wav") || ext == QLatin1String("wma");
}

// Fills the playlist and starts it as the window would: a list through the
// playlist open, files through the adding operations of the menus.
bool load(const PlayOptions& o, PlaylistCommands& commands, PlaylistFiles& lists, PlaybackState& play)
{
    if (o.files.first().toLower().endsWith(QLatin1String(".m3u"))) {
        if (!lists.openFile(o.files.first(), true)) {
            reportError(QStringLiteral("cannot read the playlist: ") + o.files.first());
            return false;
        }
        return true;
    }
    for (const QString& f : o.files) {
        if (isNonMp3(f))
            commands.Add_Non_MP3_To_PlayList(f, Get_Path_File(f));
        else
            commands.Add_Entree_To_PlayList(f);
    }
    if (play.PlayList_Count > 0) {
        play.PlayList_Pos = 1;
        commands.player().Play_Track();
    }
    return true;
}

int runPlay(CliContext& c, const QStringList& args)
{
    PlayOptions o;
    if (!parse(args, o))
        return ExitUsage;
    for (const QString& f : o.files) {
        if (!QFileInfo(f).isFile()) {
            reportError(QStringLiteral("file not found: ") + f);
            return ExitFailed;
        }
    }
    GstMediaGraphFactory graphs(o.sink);
    if (!graphs.create()) {
        reportError(QStringLiteral("no audio output: ") + (o.sink.isEmpty() ? QStringLiteral("default") : o.sink));
        return ExitFailed;
    }

    PlayUi ui(c.ui);
    PlaybackState play;
    PlayEvents events;
    Player player(PlaybackContext{c.app, c.lib, play, ui, graphs, events});
    PlaylistCommands commands(player);
    PlaylistFiles lists(commands);
    player.setLoop(o.loop);
    player.setRandom(o.random);
    if (!load(o, commands, lists, play))
        return ExitFailed;

    QEventLoop loop;
    QTimer timer;
    QElapsedTimer clock;
    clock.start();
    MainTimer mainTimer;
    const MainTimerWork work{[&] { player.colourCycle(); }, [&] { player.marquee(); }, [] {},
                             [&] { player.positionWork(); }, [] {}};
    auto over = [&] { return !play.Is_Playing || (o.seconds >= 0 && clock.elapsed() >= qint64(o.seconds) * 1000); };
    QObject::connect(&timer, &QTimer::timeout, [&] {
        bool refresh = false;
        mainTimer.tick(work, refresh, false);
        if (over())
            loop.quit();
    });
    if (!over()) {
        timer.start(MainTimer::kIntervalMs);
        loop.exec();
    }
    timer.stop();
    player.Stop_Track();
    events.finished();
    return ExitOk;
}

const CliCommand playCommand("play", "play [--loop] [--random] [--seconds N] [--audio-sink ELEMENT] FILE...|LIST.m3u",
                             runPlay);

}  // namespace

}  // namespace sonorit::cli
