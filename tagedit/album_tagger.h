#pragma once
// The album tagger (SuperTagging): one artist, album, year, genre and cover
// for a set of tracks, a title per track and, on a various-artists album, an
// artist per track. This is the window's whole state; the window shows it
// and the command-line front end drives it without one.
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "tagedit/tag_edit_context.h"

namespace sonorit {

// One entry of the album, in album order. An entry without a file is the
// place of a missing track: it keeps the numbers of the others right.
struct AlbumTrack {
    QString Track_Number;  // two digits: the entry's place in the album
    QString Artist, Album, Title, Time, Year, Genre;
    QString Path;      // the folder of the file, as the library's Folder column
    QString FileName;
    QString VA;        // "Yes" / "No"
    bool Real = false;   // the entry holds a file
};

// CommandAlbumTag: the library rows of the selected track's album in track
// order; empty, after telling what the track lacks, when its album is unknown
// or nothing is selected.
std::vector<int> Album_Tag_Rows(TagEditContext& c);
// CommandSuperTag: the selected rows in list order; empty after the message
// when fewer than two are selected.
std::vector<int> Super_Tag_Rows(TagEditContext& c);

class SuperTagging {
public:
    static constexpr int Visible_Rows = 25;

    explicit SuperTagging(TagEditContext& c) : c_(c) {}

    // Form Activate in tag mode: the tracks of the library rows, album-wide
    // values from the first, cover entries for each track. (The converting
    // mode, which makes MP3 files of WAV or WMA files, comes with the
    // converter.)
    void Open_Album(const std::vector<int>& rows);
    QString caption() const { return QStringLiteral("Album Tagging"); }

    // --- the album-wide controls ---------------------------------------------
    QString TextArtist, TextAlbum, TextYear, TextGenre;
    bool TextGenre_Enabled = false;  // "User Defined" only
    int Combo_Genre = 148;
    bool CheckVA = false;
    QString LabelName;  // the track at hand during the write
    int ProgressBar1_Max = 0, ProgressBar1_Value = 0;
    bool ProgressBar1_Visible = false;
    bool Frame_Enabled = true;  // off while the album is written

    // Typing into TextYear: digits only, four at most.
    void Type_Year(const QString& typed);
    // Combo_Genre Click: TextGenre shows the name; "User Defined" opens the
    // box empty.
    void Combo_Genre_Click(int entry);
    // Ticking CheckVA enables the row artists and disables TextArtist.
    void setCheckVA(bool ticked) { CheckVA = ticked; }
    bool TextArtist_Enabled() const { return !CheckVA; }
    bool TextVA_Enabled() const { return CheckVA; }

    // --- the tracks ------------------------------------------------------------
    const std::vector<AlbumTrack>& tracks() const { return tracks_; }
    int Track_Count() const { return int(tracks_.size()); }
    int File_Count() const;
    QString TextTrackCount() const { return QString::number(Track_Count()); }
    // The entry's title (TextSong) and artist (TextVA), by entry index.
    void setTitle(int track, const QString& text);
    void setArtist(int track, const QString& text);

    // The 25 rows show the entries from VScroll1's value on.
    bool VScroll1_Visible() const { return Track_Count() > Visible_Rows; }
    int VScroll1_Max() const { return VScroll1_Visible() ? Track_Count() - Visible_Rows : 0; }
    int VScroll1_Value() const { return top_; }
    void setVScroll1(int value);
    // The entry a row shows, -1 for a row below the last entry.
    int Row_Track(int row) const;

    // The current entry, whose number shows in blue; -1 with no entries.
    int Marked() const { return marked_; }
    // The row that shows the marker, -1 when it is scrolled away.
    int Marker_Row() const;
    void Mark(int track);

    void CommandTrackPlus();
    // Takes away the last entry that holds no file: a file's entry stays, so
    // the count never drops below the number of files.
    void CommandTrackMin();
    bool CommandTrackMin_Enabled() const { return Track_Count() > File_Count(); }
    void CommandUp();
    void CommandDown();
    bool CommandUp_Enabled() const { return marked_ > 0; }
    bool CommandDown_Enabled() const { return marked_ >= 0 && marked_ < Track_Count() - 1; }

    bool CommandOK_Enabled() const { return File_Count() > 0; }

    // --- the cover ---------------------------------------------------------------
    // "Browse Cover" first, then "Track nn Cover" for each entry with a file.
    QStringList ComboCover() const { return coverEntries_; }
    int ComboCover_Index() const { return coverIndex_; }
    // Picking "Track nn Cover" takes that track's picture as the cover
    // ("STCover.jpg"); picking "Browse Cover" takes the browsed one, opening
    // the dialog when there is none yet. False when no cover came of it.
    bool ComboCover_Click(int index);
    // The JPEG dialog; the file is copied to "STBCover.jpg" and becomes the
    // cover. False on cancel or when it is no picture (told).
    bool CommandBrowseCover();
    // The file CommandBrowseCover copies, without the dialog.
    bool Take_Browsed_Cover(const QString& file);
    // The picture TagCover shows and the tracks get; "" for none chosen, in
    // which case each track keeps its own.
    QString TagCover() const { return chosenCover_; }
    QString STCover_Path() const;
    QString STBCover_Path() const;

    // --- the write ---------------------------------------------------------------
    // CommandOK (Write_Album): each entry in order, a failing track told and
    // passed. Returns how many tracks failed.
    int Write_Album();
    // Called whenever LabelName or the progress changed during the write.
    std::function<void()> progressed;

private:
    void addTrack(const AlbumTrack& t);
    void renumber();
    void swapTracks(int a, int b);
    void fillCoverEntries();
    void keepMarkerShown();
    void clampTop();
    bool takeCover(const QString& file);
    void showProgress();
    // False after the track's failure was told.
    bool Update_Track(const AlbumTrack& t, const QString& artist);

    TagEditContext& c_;
    std::vector<AlbumTrack> tracks_;
    int top_ = 0;
    int marked_ = -1;
    QStringList coverEntries_;
    std::vector<int> coverTracks_;  // the entry of each "Track nn Cover", from combo index 1
    int coverIndex_ = -1;
    QString pickedFile_;  // the track whose "Track nn Cover" entry is picked
    QString chosenCover_;
};

// The path of the entry's file.
QString Album_Track_File(const AlbumTrack& t);

// The first bytes of a JPEG picture stand at the start of the file.
bool Is_Jpeg_File(const QString& path);

}  // namespace sonorit
