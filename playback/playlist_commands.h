#pragma once
// The ways in and out of the playlist: the four adding operations, the
// deletion of one entry, PlayFind, and the menu commands that fill the list
// from the selected rows of MP3_List.
#include <QString>

#include "playback/player.h"

namespace sonorit {

class PlaylistCommands {
public:
    explicit PlaylistCommands(Player& player);
    Player& player() { return player_; }

    // A library track; `index` is the 0-based row of MP3_List whose columns
    // make the new row.
    bool Add_To_PlayList(const QString& path, int index);
    // The arrays only; the loader of a playlist file adds the row itself.
    bool Add_Track_To_Array(const QString& path);
    // Any MP3 file: the row from its tag (TPE1, TALB, TIT2, TLEN), the time
    // measured when the tag gives none.
    bool Add_Entree_To_PlayList(const QString& path);
    // "wav" and "wma": three input boxes ask for artist, album and title; a
    // throw-away graph gives the time.
    bool Add_Non_MP3_To_PlayList(const QString& path, const QString& name);

    // `index` from 1. The running entry is stopped first and the next one
    // started.
    void Playlist_Track_Delete(int index);
    // Selects the row of the entry (from 1) and makes it visible.
    void PlayFind(int index);

    // Menu commands over the selected rows of MP3_List.
    void mnu_Track_Add();
    void mnu_Track_Play();
    void mnu_Selection_Add();
    void mnu_Selection_Play();
    void mnu_Artist_Add();
    void mnu_Artist_Play();
    void mnu_Album_Add();
    void mnu_Album_Play();
    void mnu_All_Play();
    void mnu_Wav_Add();
    void mnu_Wma_Add();
    void mnu_PlayList_Clear();
    // Double click on an MP3_List row: mnu_Track_Add and a beep (nothing while
    // the list is hidden or no row is selected).
    void libraryDoubleClick();

    // The row's time of an MP3 file as the adding operation finds it: TLEN,
    // else measured, "MM:SS".
    PlayRow readEntryRow(const QString& path);

private:
    void addRows(const std::vector<int>& rows, bool play);
    void artist(bool play);
    void album(bool play);
    void addIfGood(int row);
    void startIfFirst();
    void stopAndClear();
    void addNonMp3Dialog(bool wav);

    Player& player_;
    PlaybackContext& c_;
};

}  // namespace sonorit
