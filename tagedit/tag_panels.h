#pragma once
// The three tag panels of the main window as the user sees them: every box,
// combo and label of FrameTag1, FrameTag2 and FrameMPEG, which track is on
// show and which list picked it. The window mirrors this state in its
// widgets; the command-line front end and the batch commands work on it
// without a window.
#include <QString>
#include <functional>

#include "tagedit/tag_edit_context.h"
#include "tags/mpeg_info.h"

namespace sonorit {

// The text boxes a user can type into.
enum class PanelBox {
    Tag1_Text_Artist,
    Tag1_Text_Album,
    Tag1_Text_Track,
    Tag1_Text_Year,
    Tag1_Text_Title,
    Tag1_Text_Comment,
    Tag2_Text_Artist,
    Tag2_Text_Album,
    Tag2_Text_Track,
    Tag2_Text_Year,
    Tag2_Text_Title,
    Tag2_Text_Comment,
    Tag2_Text_Genre,
};

// The most characters a box takes, 0 for no limit.
int Panel_Box_Limit(PanelBox box);
// Track and Year boxes take digits only.
bool Panel_Box_Digits(PanelBox box);
// What a box holds after `typed` was typed into it (or pasted): printable
// characters other than digits dropped where only digits count, then cut at
// the limit.
QString Filter_Typed(PanelBox box, const QString& typed);

// What a load read beside the boxes (length, frame count, cover, the comment's
// language and description), kept with the panels so that a write does not
// depend on what other routines read into the shared tag state meanwhile.
struct PanelTagRead {
    QString path;
    Tag2FieldSet fields;
    QString language, description, textRead;
};

struct TagPanels {
    // FrameTag1
    QString Tag1_Text_Artist;
    QString Tag1_Text_Album;
    QString Tag1_Text_Track;
    QString Tag1_Text_Year;
    QString Tag1_Text_Title;
    QString Tag1_Text_Comment;
    int Tag1_Combo_Genre = 148;  // an index of Genre_Names()

    // FrameTag2
    QString Tag2_Text_Artist;
    QString Tag2_Text_Album;
    QString Tag2_Text_Track;
    QString Tag2_Text_Year;
    QString Tag2_Text_Title;
    QString Tag2_Text_Comment;
    QString Tag2_Text_Genre;
    bool Tag2_Text_Genre_Enabled = false;  // only for "User Defined"
    QString Tag2_Text_Time;                // read-only "MM:SS"
    int Tag2_Combo_Genre = 148;
    int Tag2_Combo_VA = 0;  // 0 no, 1 "Various Artists"
    // The picture of Cover_Tag: "Cover.jpg" of the data folder, or "" when
    // the default picture shows.
    QString Cover_Tag;

    // FrameMPEG
    MpegLabels Mpeg;

    // 1 when MP3_List was clicked last, 2 when Play_List was.
    int Tag_Source = 1;
    // The track on show; "" before the first selection.
    QString Tag_Shown_Path;
    PanelTagRead Read;

    QString& box(PanelBox b);
    const QString& box(PanelBox b) const;
    // Typing into a box: the limit and the digit filter apply.
    void Type_Into(PanelBox b, const QString& text) { box(b) = Filter_Typed(b, text); }
};

// Where the focus goes after a routine; the window moves it, others ignore it.
enum class PanelFocus { None, Library_List, Play_List, Tag2_Text_Genre };

// A routine on the panels: the tag context, the panel state and what the
// window does when the state changed (show it, move the focus). Without a
// window both hooks stay empty.
struct PanelContext {
    TagEditContext& edit;
    TagPanels& panels;
    std::function<void()> shown;             // the state changed: show it
    std::function<void(PanelFocus)> focus;   // put the focus there

    void show() const
    {
        if (shown)
            shown();
    }
    void moveFocus(PanelFocus where) const
    {
        if (focus && where != PanelFocus::None)
            focus(where);
    }
};

// The tag state's fields of the last read, and back.
PanelTagRead Keep_Tag_Read(const TagState& tags, const QString& path);
void Restore_Tag_Read(TagState& tags, const PanelTagRead& read);

// "Cover.jpg" of the data folder when it is there, else "": what Cover_Tag
// shows after a read or a chosen picture.
QString Shown_Tag_Cover(const TagState& tags);

// Read_Tag1, Read_Tag2(path, 0) and Show_Mpeg_Info into the panels, with
// the cover shown and Tag_Shown_Path: what the file holds, nothing more.
void Read_Into_Panels(TagEditContext& c, TagPanels& panels, const QString& path);

// WAV and WMA entries of the playlist load nothing into the panels.
bool Is_Wav_Or_Wma(const QString& path);

// Reads the track into the panels as a selection does: Read_Tag1,
// Read_Tag2(path, 0), Show_Mpeg_Info; Tag_Shown_Path becomes the path; an
// empty Tag2 comment shows the stamp; the cover shown is taken anew (a
// chosen picture is discarded); the filename tagger follows if open (`row`
// is the MP3_List row, -1 from the playlist). A file that is gone gives the
// message "File not found" with the path and leaves the panels alone
// (false): a read must not leave an empty file behind.
bool Load_Panels(PanelContext& p, const QString& path, int row = -1);

// MP3_List item click on `row`. A missing file gives the message "File not
// found" with the path and leaves the panels alone (false).
bool Select_Library_Row(PanelContext& p, int row);
// Play_List item click on `entry` (from 1). WAV and WMA entries load
// nothing (false); the entry still counts as clicked.
bool Select_Playlist_Entry(PanelContext& p, int entry);

}  // namespace sonorit
