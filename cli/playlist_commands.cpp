// sonorit-cli playlist, queue and dups: the playlist without sound. The
// player behind them is silent: its graphs render nothing and report stopped.
#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "cli/library_verb.h"
#include "playback/dup_scan.h"
#include "playback/playlist_files.h"
#include "playback/silent_graph.h"

namespace sonorit::cli {

namespace {

// The playback core on the command line's state.
struct SilentPlayback {
    explicit SilentPlayback(CliContext& c)
        : player(PlaybackContext{c.app, c.lib, play, c.ui, graphs, view}), commands(player), files(commands)
    {
    }
    PlaybackState play;
    SilentGraphFactory graphs;
    PlayerView view;
    Player player;
    PlaylistCommands commands;
    PlaylistFiles files;
};

// One line per row of Play_List, then the count.
void printPlaylist(const PlaybackState& s)
{
    QString text;
    for (int i = 1; i <= s.Play_List.count(); ++i) {
        const PlayRow& row = s.Play_List.row(i - 1);
        text += QString::number(i);
        for (const QString& field : row)
            text += QLatin1Char('\t') + field;
        text += QLatin1Char('\t') + (i <= s.PlayList_Count ? s.playFile(i) : QString()) + QLatin1Char('\n');
        if (text.size() > 1 << 16) {
            out(text);
            text.clear();
        }
    }
    out(text + QStringLiteral("count\t%1\n").arg(s.PlayList_Count));
}

// playlist FILE.m3u [--merge OTHER.m3u]... [--save OUT.m3u] [--export DIR]
int playlistCommand(CliContext& c, const QStringList& args)
{
    if (args.isEmpty() || args[0].startsWith(QLatin1String("--")))
        return usageError(QStringLiteral("playlist FILE.m3u [--merge OTHER.m3u]... [--save OUT.m3u] [--export DIR]"));
    QStringList merges;
    QString save, exportDir;
    for (int i = 1; i < args.size(); ++i) {
        const QString& option = args[i];
        if (i + 1 >= args.size())
            return usageError(QStringLiteral("a value is missing after ") + option);
        const QString value = absolute(args[++i]);
        if (option == QLatin1String("--merge"))
            merges << value;
        else if (option == QLatin1String("--save") && save.isEmpty())
            save = value;
        else if (option == QLatin1String("--export") && exportDir.isEmpty())
            exportDir = value;
        else
            return usageError(QStringLiteral("unknown or repeated option: ") + option);
    }
    SilentPlayback p(c);
    const QString list = absolute(args[0]);
    if (!p.files.openFile(list, false)) {
        reportError(QStringLiteral("cannot read the playlist: ") + list);
        return ExitFailed;
    }
    for (const QString& other : merges) {
        if (!p.files.mergeFile(other)) {
            reportError(QStringLiteral("cannot read the playlist: ") + other);
            return ExitFailed;
        }
    }
    if (!save.isEmpty() && !p.files.saveTo(save, true)) {
        reportError(QStringLiteral("cannot write the playlist: ") + save);
        return ExitFailed;
    }
    if (!exportDir.isEmpty()) {
        if (!QFileInfo(exportDir).isDir()) {
            reportError(QStringLiteral("no such folder: ") + exportDir);
            return ExitFailed;
        }
        p.files.exportTo(exportDir);
    }
    printPlaylist(p.play);
    return ExitOk;
}

using QueueFn = void (PlaylistCommands::*)();
struct QueueVerb {
    const char* name;
    QueueFn run;
};
const QueueVerb kQueueVerbs[] = {
    {"track-add", &PlaylistCommands::mnu_Track_Add},
    {"track-play", &PlaylistCommands::mnu_Track_Play},
    {"selection-add", &PlaylistCommands::mnu_Selection_Add},
    {"selection-play", &PlaylistCommands::mnu_Selection_Play},
    {"artist-add", &PlaylistCommands::mnu_Artist_Add},
    {"artist-play", &PlaylistCommands::mnu_Artist_Play},
    {"album-add", &PlaylistCommands::mnu_Album_Add},
    {"album-play", &PlaylistCommands::mnu_Album_Play},
    {"all-play", &PlaylistCommands::mnu_All_Play},
};

// queue LIB.vkt COMMAND [ROW...]
int queueCommand(CliContext& c, const QStringList& args)
{
    if (args.size() < 2)
        return usageError(QStringLiteral("queue LIB.vkt COMMAND [ROW...]"));
    const QueueVerb* verb = nullptr;
    for (const QueueVerb& v : kQueueVerbs)
        if (args[1] == QLatin1String(v.name))
            verb = &v;
    if (!verb)
        return usageError(QStringLiteral("unknown queue command: ") + args[1]);
    std::vector<int> rows;
    if (const int rc = parseRows(args.mid(2), rows); rc != ExitOk)
        return rc;
    if (const int opened = openLibrary(c, args[0]); opened != ExitOk)
        return opened;
    if (const int rc = selectRows(c.lib.MP3_List, rows); rc != ExitOk)
        return rc;
    SilentPlayback p(c);
    (p.commands.*verb->run)();
    printPlaylist(p.play);
    QStringList order;
    for (int i = 1; i <= p.play.PlayList_Count; ++i)
        order << QString::number(p.play.randomOrder(i));
    out(QStringLiteral("order\t") + order.join(QLatin1Char(' ')) + QLatin1Char('\n'));
    return ExitOk;
}

// The rows ticked in the duplicate window, several groups at once: a group
// whose rows are all ticked is refused as the window refuses it; the rest go
// from the last row to the first, and the scan runs again.
void removeDuplicates(SilentPlayback& p, DupScan& scan, const std::vector<int>& ticked, UiPort& ui)
{
    std::vector<int> removable;
    for (const DupGroup& g : scan.groups()) {
        std::vector<int> mine;
        for (int row : g.entries)
            if (std::find(ticked.begin(), ticked.end(), row) != ticked.end())
                mine.push_back(row);
        if (mine.empty())
            continue;
        if (mine.size() == g.entries.size()) {
            ui.message(QStringLiteral("Removing all instances of a duplicate track is not allowed.\r\n"
                                      "At least one track from the list must be unchecked."),
                       QStringLiteral("Can't remove all tracks"), Buttons::Ok, Icon::None);
            continue;
        }
        removable.insert(removable.end(), mine.begin(), mine.end());
    }
    if (removable.empty())
        return;
    std::sort(removable.rbegin(), removable.rend());
    for (int row : removable)
        p.commands.Playlist_Track_Delete(row);
    if (!scan.scan())
        ui.message(QStringLiteral("No more duplicates found in the current playlist.\r\nThe window will be closed."),
                   QStringLiteral("Scan Result"), Buttons::Ok, Icon::None);
}

// dups FILE.m3u [--remove ROW...]
int dupsCommand(CliContext& c, const QStringList& args)
{
    if (args.isEmpty() || args[0].startsWith(QLatin1String("--")))
        return usageError(QStringLiteral("dups FILE.m3u [--remove ROW...]"));
    const bool remove = args.size() > 1;
    if (remove && (args[1] != QLatin1String("--remove") || args.size() < 3))
        return usageError(QStringLiteral("dups FILE.m3u [--remove ROW...]"));
    std::vector<int> ticked;  // from 1, as the duplicate groups count
    if (const int rc = parseRows(args.mid(2), ticked); rc != ExitOk)
        return rc;
    for (int& row : ticked)
        ++row;
    SilentPlayback p(c);
    const QString list = absolute(args[0]);
    if (!p.files.openFile(list, false)) {
        reportError(QStringLiteral("cannot read the playlist: ") + list);
        return ExitFailed;
    }
    DupScan scan(p.commands);
    scan.scan();
    QString text;
    int number = 0;
    for (const DupGroup& g : scan.groups()) {
        const PlayRow first = scan.entryRow(g.entries.front());
        QStringList rows;
        for (int row : g.entries)
            rows << QString::number(row);
        text += QStringLiteral("%1\t%2\t%3\t%4\n").arg(++number).arg(first[PlayTitle], first[PlayArtist], rows.join(QLatin1Char(',')));
    }
    out(text);
    if (!remove)
        return ExitOk;
    for (int row : ticked) {
        const bool grouped = std::any_of(scan.groups().begin(), scan.groups().end(), [row](const DupGroup& g) {
            return std::find(g.entries.begin(), g.entries.end(), row) != g.entries.end();
        });
        if (!grouped)
            return usageError(QStringLiteral("row %1 is in no group of duplicates").arg(row));
    }
    removeDuplicates(p, scan, ticked, c.ui);
    printPlaylist(p.play);
    return ExitOk;
}

const CliCommand playlistVerb("playlist", "playlist FILE.m3u [--merge OTHER.m3u]... [--save OUT.m3u] [--export DIR]",
                              playlistCommand);
const CliCommand queueVerb("queue", "queue LIB.vkt COMMAND [ROW...]", queueCommand);
const CliCommand dupsVerb("dups", "dups FILE.m3u [--remove ROW...]", dupsCommand);

}  // namespace
}  // namespace sonorit::cli
