// sonorit-cli album-tag: the album tagger over library rows. One ROW opens the
// album of that row as the tag panel's album button does, several open those
// rows as its selection button does; the options edit the window as a user
// would, then OK writes every track.
#include <QFileInfo>
#include <QMap>
#include <vector>

#include "cli/library_verb.h"
#include "cli/tag_verb_args.h"
#include "shell/helpers.h"
#include "tagedit/album_tagger.h"
#include "tags/id3v1.h"

namespace sonorit::cli {

namespace {

struct AlbumTagArgs {
    QString vkt;
    QStringList rows;
    QMap<QString, QString> once;              // artist, album, year, genre, va, cover
    std::vector<std::pair<int, QString>> titles, artists;  // per track number
};

const QStringList kSingle = {"artist", "album", "year", "genre", "va", "cover"};

// "N=TEXT" with N a track number from 1.
bool numbered(const QString& value, std::vector<std::pair<int, QString>>& out)
{
    const qsizetype eq = value.indexOf(QLatin1Char('='));
    int n = 0;
    if (eq < 1 || !Is_Number_In(value.left(eq), 1, 9999, &n))
        return false;
    out.emplace_back(n, value.mid(eq + 1));
    return true;
}

// "" when well formed; otherwise the reason.
QString parse(const QStringList& args, AlbumTagArgs& a)
{
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (!arg.startsWith(QLatin1String("--"))) {
            if (a.vkt.isEmpty())
                a.vkt = arg;
            else
                a.rows << arg;
            continue;
        }
        QString name = arg.mid(2), value;
        if (const qsizetype eq = name.indexOf(QLatin1Char('=')); eq >= 0) {
            value = name.mid(eq + 1);
            name = name.left(eq);
        } else if (i + 1 < args.size()) {
            value = args[++i];
        } else {
            return QStringLiteral("--") + name + QStringLiteral(" needs a value");
        }
        if (kSingle.contains(name)) {
            if (a.once.contains(name))
                return QStringLiteral("--") + name + QStringLiteral(" is given twice");
            a.once[name] = value;
        } else if (name == QLatin1String("title")) {
            if (!numbered(value, a.titles))
                return QStringLiteral("--title takes N=TEXT, N a track number from 1: ") + value;
        } else if (name == QLatin1String("track-artist")) {
            if (!numbered(value, a.artists))
                return QStringLiteral("--track-artist takes N=TEXT, N a track number from 1: ") + value;
        } else {
            return QStringLiteral("unknown option --") + name;
        }
    }
    if (a.vkt.isEmpty() || a.rows.isEmpty())
        return QStringLiteral("album-tag needs LIB.vkt and at least one ROW");
    const QString va = a.once.value("va", "off");
    if (va != QLatin1String("on") && va != QLatin1String("off"))
        return QStringLiteral("--va is on or off: ") + va;
    if (!a.artists.empty() && va != QLatin1String("on"))
        return QStringLiteral("--track-artist needs --va on: the track artists are closed otherwise");
    if (a.once.contains("genre")) {
        const QString g = a.once["genre"];
        const qsizetype colon = g.indexOf(QLatin1Char(':'));
        int index = -1;
        if (!Is_Number_In(colon < 0 ? g : g.left(colon), 0, int(Genre_Names().size()) - 1, &index))
            return QStringLiteral("--genre takes INDEX[:TEXT], INDEX from 0 to 149: ") + g;
        if (colon >= 0 && index != 149)
            return QStringLiteral("--genre takes a TEXT with INDEX 149 (User Defined) only: ") + g;
    }
    if (a.once.contains("cover")) {
        const QString cover = a.once["cover"];
        int n = 0;
        if (cover.startsWith(QLatin1String("track:"))
                ? !Is_Number_In(cover.mid(6), 1, 9999, &n)
                : !QFileInfo(cover).isFile() || !cover.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive))
            return QStringLiteral("--cover takes track:N or an existing .jpg file: ") + cover;
    }
    return {};
}

// The options as typed into the window. ExitUsage for a track number past
// the album; ExitFailed when the cover could not be had.
int editWindow(CliContext& c, SuperTagging& w, const AlbumTagArgs& a)
{
    for (const auto& list : {a.titles, a.artists}) {
        for (const auto& [n, text] : list) {
            if (n > w.Track_Count())
                return usageError(QStringLiteral("the album has %1 tracks, not %2").arg(w.Track_Count()).arg(n));
        }
    }
    if (a.once.contains("va"))
        w.setCheckVA(a.once["va"] == QLatin1String("on"));
    if (a.once.contains("artist"))
        w.TextArtist = a.once["artist"];
    if (a.once.contains("album"))
        w.TextAlbum = a.once["album"];
    if (a.once.contains("year"))
        w.Type_Year(a.once["year"]);
    if (a.once.contains("genre")) {
        const QString g = a.once["genre"];
        const qsizetype colon = g.indexOf(QLatin1Char(':'));
        w.Combo_Genre_Click(int(Val(colon < 0 ? g : g.left(colon))));
        if (colon >= 0)
            w.TextGenre = g.mid(colon + 1);
    }
    for (const auto& [n, text] : a.titles)
        w.setTitle(n - 1, text);
    for (const auto& [n, text] : a.artists)
        w.setArtist(n - 1, text);
    if (!a.once.contains("cover"))
        return ExitOk;
    const QString cover = a.once["cover"];
    if (!cover.startsWith(QLatin1String("track:"))) {
        answerNextDialog(c, absolute(cover));
        return w.ComboCover_Click(0) ? int(ExitOk) : int(ExitFailed);
    }
    const QString entry = QStringLiteral("Track %1 Cover").arg(Val(cover.mid(6)), 2, 10, QLatin1Char('0'));
    const int index = int(w.ComboCover().indexOf(entry));
    if (index < 1)
        return usageError(QStringLiteral("no track of the album is ") + cover);
    if (!w.ComboCover_Click(index)) {
        reportError(QStringLiteral("track %1 carries no picture").arg(cover.mid(6)));
        return ExitFailed;
    }
    return ExitOk;
}

const CliCommand albumTagCommand(
    "album-tag",
    "album-tag LIB.vkt ROW... [--artist A] [--album A] [--year Y] [--genre INDEX[:TEXT]] [--va on|off] "
    "[--title N=TEXT]... [--track-artist N=TEXT]... [--cover track:N|FILE.jpg]",
    [](CliContext& c, const QStringList& args) {
        AlbumTagArgs a;
        if (const QString problem = parse(args, a); !problem.isEmpty())
            return usageError(problem);
        std::vector<int> rows;
        if (const int rc = parseRows(a.rows, rows); rc != ExitOk)
            return rc;
        return onLibrary(c, a.vkt, Lengths::Tags, [&](LibraryContext&) {
            if (const int rc = selectRows(c.lib.MP3_List, rows); rc != ExitOk)
                return rc;
            TagState tags = Fresh_Tag_State(c.app);
            TagEditContext edit{c.app, c.lib, c.ui, tags, nullptr, {}};
            const std::vector<int> album = rows.size() == 1 ? Album_Tag_Rows(edit) : Super_Tag_Rows(edit);
            if (album.empty())
                return int(ExitFailed);
            SuperTagging window(edit);
            window.Open_Album(album);
            if (const int rc = editWindow(c, window, a); rc != ExitOk)
                return rc;
            if (window.Write_Album() == 0)
                return int(ExitOk);
            printRows(c.lib.MP3_List);  // the tracks written before and after a failed one changed
            return int(ExitFailed);
        });
    });

}  // namespace

}  // namespace sonorit::cli
