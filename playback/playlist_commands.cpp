#include "playlist_commands.h"

#include <cmath>

#include "playback/playlist_model.h"
#include "shell/helpers.h"
#include "tags/id3v2_reader.h"
#include "tags/mpeg_info.h"
#include "tags/track_seconds.h"

namespace sonorit {

PlaylistCommands::PlaylistCommands(Player& player) : player_(player), c_(player.context()) {}

bool PlaylistCommands::Add_To_PlayList(const QString& path, int index)
{
    if (!Grow_PlayList(c_.play, path))
        return false;
    PlayRow row;
    if (index >= 0 && index < c_.lib.MP3_List.count()) {
        const TrackRow& t = c_.lib.MP3_List.row(index);
        row = {t[ColArtist], t[ColAlbum], t[ColTitle], t[ColTime]};
    }
    c_.play.Play_List.append(std::move(row));
    return true;
}

bool PlaylistCommands::Add_Track_To_Array(const QString& path)
{
    return Grow_PlayList(c_.play, path);
}

PlayRow PlaylistCommands::readEntryRow(const QString& path)
{
    // No data folder: the walk leaves pictures alone.
    TagState tags;
    tags.Read_Other_Versions = c_.app.Tag_Read_Other;
    Read_Tag2(tags, path, Tag2Mode::Import);
    const Tag2FieldSet& f = tags.Tag2_Fields;
    QString time = f.Time;
    if (time.isEmpty() || time == QLatin1String("00:00"))
        time = Format_Play_Time(Get_Track_Seconds(path, c_.app.Data_Folder(), c_.lib.durations));
    return {f.Artist, f.Album, f.Title, time};
}

bool PlaylistCommands::Add_Entree_To_PlayList(const QString& path)
{
    if (!Grow_PlayList(c_.play, path))
        return false;
    c_.play.Play_List.append(readEntryRow(path));
    return true;
}

bool PlaylistCommands::Add_Non_MP3_To_PlayList(const QString& path, const QString& name)
{
    if (!Grow_PlayList(c_.play, path))
        return false;
    PlayRow row;
    row[PlayArtist] = c_.ui.input(QStringLiteral("Please provide the artist name of this track ") + name,
                                  QStringLiteral("Unknown Artist"), QStringLiteral("Unknown Artist"));
    row[PlayAlbum] = c_.ui.input(QStringLiteral("Please provide the album name of this track ") + name,
                                 QStringLiteral("Unknown Album"), QStringLiteral("Unknown Album"));
    row[PlayTitle] = c_.ui.input(QStringLiteral("Please provide the title of this track ") + name,
                                 QStringLiteral("Unknown Title"), QStringLiteral("Unknown Title"));
    // A throw-away graph measures the file; any failure leaves the time empty.
    if (std::unique_ptr<MediaGraph> graph = c_.graphs.create()) {
        if (graph->renderFile(path)) {
            std::optional<double> seconds = graph->duration();
            if (!seconds && graph->pause())
                seconds = graph->duration();
            if (seconds && std::isfinite(*seconds) && *seconds >= 0 && *seconds < 1e9)
                row[PlayTime] = Format_Play_Time(static_cast<long long>(std::nearbyint(*seconds)));
            graph->stop();
        }
    }
    c_.play.Play_List.append(std::move(row));
    return true;
}

void PlaylistCommands::Playlist_Track_Delete(int index)
{
    PlaybackState& s = c_.play;
    if (index < 1 || index > s.PlayList_Count)
        return;
    if (s.playFile(index) == s.Now_Source) {
        player_.Stop_Track();
        if (s.PlayList_Count > 1)
            player_.Next_Track();
    }
    s.Play_List.removeAt(index - 1);
    Remove_PlayList_Entry(s, index);
    c_.requestMenuRefresh();
}

void PlaylistCommands::PlayFind(int index)
{
    player_.PlayFind(index);
}

void PlaylistCommands::startIfFirst()
{
    if (c_.play.PlayList_Count == 1) {
        c_.play.PlayList_Pos = 1;
        player_.Play_Track();
    }
}

void PlaylistCommands::stopAndClear()
{
    player_.Stop_Track();
    if (c_.play.PlayList_Count > 0)
        Clear_PlayList(c_.play);
}

void PlaylistCommands::addIfGood(int row)
{
    const QString path = Library_Row_Path(c_.lib.MP3_List, row);
    if (!Is_Good_Track(path))
        return;
    if (Add_To_PlayList(path, row))
        startIfFirst();
}

void PlaylistCommands::addRows(const std::vector<int>& rows, bool play)
{
    if (play)
        stopAndClear();
    for (int row : rows)
        addIfGood(row);
    c_.requestMenuRefresh();
}

void PlaylistCommands::mnu_Track_Add()
{
    const TrackList& list = c_.lib.MP3_List;
    const int sel = list.selected();
    if (sel < 0)
        return;
    const QString path = Library_Row_Path(list, sel);
    if (!File_Exists(path)) {
        c_.ui.message(path, QStringLiteral("File not found"), Buttons::Ok, Icon::None);
    } else if (!Is_Mpeg(path)) {
        c_.ui.message(path, QStringLiteral("Not Mpeg 1/Layer 3"), Buttons::Ok, Icon::None);
    } else if (Add_To_PlayList(path, sel)) {
        startIfFirst();
    }
    c_.requestMenuRefresh();
}

void PlaylistCommands::mnu_Track_Play()
{
    if (c_.lib.MP3_List.selected() < 0)
        return;
    stopAndClear();
    mnu_Track_Add();
}

void PlaylistCommands::mnu_Selection_Add()
{
    const std::vector<int> rows = c_.lib.MP3_List.selectedRows();
    if (c_.lib.MP3_List.selected() < 0 || rows.empty())
        return;
    addRows(rows, false);
}

void PlaylistCommands::mnu_Selection_Play()
{
    const std::vector<int> rows = c_.lib.MP3_List.selectedRows();
    if (c_.lib.MP3_List.selected() < 0 || rows.empty())
        return;
    addRows(rows, true);
}

void PlaylistCommands::mnu_All_Play()
{
    const int n = c_.lib.MP3_List.count();
    std::vector<int> rows(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i)
        rows[static_cast<size_t>(i)] = i;
    c_.play.Play_File.reserve(n);
    c_.play.Random_Order.reserve(static_cast<size_t>(n));
    c_.play.Play_List.reserve(n);
    addRows(rows, true);
}

void PlaylistCommands::artist(bool play)
{
    const TrackList& list = c_.lib.MP3_List;
    const int sel = list.selected();
    if (sel < 0)
        return;
    if (list.field(sel, ColArtist).isEmpty()) {
        c_.ui.message(QStringLiteral("No Artist known for this Track"), QStringLiteral("Unknown Artist"), Buttons::Ok,
                      Icon::None);
        return;
    }
    addRows(Artist_Members(list, sel), play);
}

void PlaylistCommands::mnu_Artist_Add() { artist(false); }
void PlaylistCommands::mnu_Artist_Play() { artist(true); }

namespace {
bool albumKnown(PlaybackContext& c, int missing)
{
    if (missing == 1)
        c.ui.message(QStringLiteral("No Album known for this Track"), QStringLiteral("Unknown Album"), Buttons::Ok,
                     Icon::None);
    else if (missing == 2)
        c.ui.message(QStringLiteral("No Artist/Album known for this Track"), QStringLiteral("Unknown Artist/Album"),
                     Buttons::Ok, Icon::None);
    return missing == 0;
}
}  // namespace

void PlaylistCommands::album(bool play)
{
    const int sel = c_.lib.MP3_List.selected();
    if (sel < 0)
        return;
    int missing = 0;
    const std::vector<int> rows = Album_Members(c_.lib.MP3_List, sel, &missing);
    if (albumKnown(c_, missing))
        addRows(rows, play);
}

void PlaylistCommands::mnu_Album_Add() { album(false); }
void PlaylistCommands::mnu_Album_Play() { album(true); }

void PlaylistCommands::addNonMp3Dialog(bool wav)
{
    const QString ext = wav ? QStringLiteral("wav") : QStringLiteral("wma");
    const QString upper = ext.toUpper();
    const QString start =
        c_.app.settings.GetSetting(QStringLiteral("Convert"), QStringLiteral("SourceFolder"), QString());
    const QString path = File_Dialog(c_.ui, 1, QStringLiteral("Open %1 Audio Track").arg(upper), QString(),
                                     QStringLiteral("%1 Files (*.%2)").arg(upper, ext), QStringLiteral("*.") + ext,
                                     start, ext, false);
    if (path.right(3) != ext || !File_Exists(path))
        return;
    if (Add_Non_MP3_To_PlayList(path, Get_Path_File(path)))
        startIfFirst();
    c_.requestMenuRefresh();
}

void PlaylistCommands::mnu_Wav_Add()
{
    addNonMp3Dialog(true);
}

void PlaylistCommands::mnu_Wma_Add()
{
    addNonMp3Dialog(false);
}

void PlaylistCommands::mnu_PlayList_Clear()
{
    player_.Stop_Track();
    Clear_PlayList(c_.play);
    c_.requestMenuRefresh();
}

void PlaylistCommands::libraryDoubleClick()
{
    if (c_.lib.MP3_List.hidden() || c_.lib.MP3_List.selected() < 0)
        return;
    mnu_Track_Add();
    c_.view.beep();
}

}  // namespace sonorit
