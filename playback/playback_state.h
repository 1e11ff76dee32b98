#pragma once
// What the player and the playlist keep in memory, owned by one object so
// that tests can make a fresh one. Entries count from 1 as the player
// indexes them; the containers underneath count from 0.
#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <vector>

#include "tags/tag_state.h"

namespace sonorit {

class PlayerView;

enum PlayColumn { PlayArtist = 0, PlayAlbum, PlayTitle, PlayTime, PlayColumnCount };
using PlayRow = std::array<QString, PlayColumnCount>;

// The rows of Play_List: what the window shows, four text columns. Row r
// (from 0) is entry r + 1 as long as rows and arrays are in step; a playlist
// file whose files vanished can put them out of step, and then the rows win
// for what is shown. The view is told of every change.
class PlayListRows {
public:
    int count() const { return static_cast<int>(rows_.size()); }
    bool isEmpty() const { return rows_.empty(); }
    const PlayRow& row(int index) const { return rows_[static_cast<size_t>(index)]; }
    const QString& field(int index, int column) const { return rows_[static_cast<size_t>(index)][column]; }

    void append(PlayRow row);
    void setRow(int index, PlayRow row);
    void removeAt(int index);
    void clear();
    void reserve(int n) { rows_.reserve(static_cast<size_t>(n)); }

    // The selected row, -1 for none.
    int selected() const { return selected_; }
    void select(int index);

    // Many appends told to the view as one reset.
    void beginBulk() { ++bulk_; }
    void endBulk();

    void setView(PlayerView* view) { view_ = view; }

private:
    std::vector<PlayRow> rows_;
    int selected_ = -1;
    int bulk_ = 0;
    bool pendingReset_ = false;
    PlayerView* view_ = nullptr;
};

struct Rgb {
    int r = 0, g = 0, b = 0;
    bool operator==(const Rgb& o) const { return r == o.r && g == o.g && b == o.b; }
};

struct PlaybackState {
    // The playlist. Play_File and Random_Order only grow; clearing sets the
    // count to 0 and leaves them. The library's rename and relocate update
    // Play_File in place (LibraryState::Playlist_Paths points at it).
    PlayListRows Play_List;
    QStringList Play_File;          // entry i at [i - 1]
    std::vector<int> Random_Order;  // entry i at [i - 1]: a permutation of 1..PlayList_Count
    int PlayList_Count = 0;
    int PlayList_Pos = 0;           // 0 = none; a position in Random_Order with Random_On
    static constexpr int PlayList_Limit = 32767;

    bool Random_On = false;
    bool Loop_On = false;

    // The running track.
    bool Is_Playing = false;
    bool Auto_Next = false;
    QString Scroll_Text;
    QString Now_Artist;
    QString Now_Album;
    QString Now_File;    // what the graph renders: a copy, or the track itself for wav and wma
    QString Now_Source;  // the entry's path as the playlist holds it
    QString Time_Now;
    QString Time_Total;

    // Library play.
    bool Lib_Play = false;
    int Lib_Pos = 0;  // 1-based index into MP3_List
    QString Lib_File;

    // Sliders and mute as the player sees them.
    int Time_Slider_Max = 10;
    int Time_Slider_Value = 0;
    bool Time_Slider_Dragging = false;
    int Volume_Slider_Value = 80;  // 0..100
    int Volume_Slider_Min = 0;
    int Balance_Slider_Value = 0;  // -50..50
    int Volume_Level = 80 * 70 - 7000;
    int Mute_Level = -7000;
    bool Muted = false;  // `mute` shows the nosound picture
    bool Volume_Lock_Main = false;
    bool Volume_Lock_Cover = false;

    // The colour cycle of the marquee pictures.
    Rgb Cycle_Colour{255, 0, 0};

    // Windows the player drives or yields to.
    bool Cover_Window_Open = false;
    QString Cover_Caption = QStringLiteral("Cover Image (current playing track)");
    bool Lyrics_On = true;   // the tick of the cover window's mnu_Lyrics_On
    bool CD_Panel_Open = false;  // the CD panel refuses the player while open
    bool Ripper_Open = false;
    bool PlayList_Busy = false;  // a playlist file is being read

    // Synced lyrics of the track now starting (arrays count from 1).
    LyricState Lyrics;
    int Lyric_Pos = 0;
    bool Has_Lyrics = false;

    // The current playlist file; its folder is AppState::Playlist_Data_Folder.
    QString Playlist_File;
    QString Playlist_Name;

    // Uniform in [0, 1); the growing shuffle draws from it. Tests replace it.
    std::function<double()> Random;

    PlaybackState();

    QString playFile(int entry) const { return Play_File.value(entry - 1); }
    int randomOrder(int position) const
    {
        return position >= 1 && position <= static_cast<int>(Random_Order.size()) ? Random_Order[static_cast<size_t>(position - 1)] : 0;
    }
    // The entry at PlayList_Pos: the position itself, or through Random_Order.
    int currentEntry() const { return Random_On ? randomOrder(PlayList_Pos) : PlayList_Pos; }
};

}  // namespace sonorit
