#pragma once
// The filename tagger: a file name cut into words, of which the user picks a
// run for each of Artist, Album and Title, written as the track's tags. It
// works on the selected library row or on a folder of MP3 files and steps
// through them. The window shows this state; every rule lives here.
#include <QString>
#include <QStringList>

#include "tagedit/tag_edit_context.h"

namespace sonorit {

// The name without its extension, made into words: "_", "-" and "%" become
// blanks ("%20" as a whole), runs of blanks one blank, trimmed.
QString Clean_Filename(const QString& stem);
// The combo entries of a file name given with its 4-character extension:
// every run of consecutive words, first word alone, first two, ... the whole
// name, then the same from the second word on. n words give n(n+1)/2
// entries. A name of fewer than 4 characters gives none.
QStringList Filename_Word_Runs(const QString& fileName);

// The genre combo of the window: the program's names, entry 149 reading
// "User defined".
QStringList Filename_Genre_Names();

// Which tags a write touches (FT_Option1).
enum class FtOption { Tag1Only = 0, Tag2Only = 1, Both = 2 };

// Where a command wants the keyboard focus afterwards.
enum class FtFocus { None, Artist, GenreText, Comment };

// The controls as the user sees them.
struct FilenameTagForm {
    QString FilenameText;
    QStringList Word_Runs;  // the entries of all three combos
    QString FT_Tag2_Combo_Artist, FT_Tag2_Combo_Album, FT_Tag2_Combo_Title;
    QString FT_Tag2_Text_Track, FT_Tag2_Text_Year;
    bool FT_Tag2_VA = false;
    int FT_Tag2_Combo_Genre = 149;
    QString FT_Tag2_Text_Genre;
    bool FT_Tag2_Text_Genre_Enabled = true;
    QString FT_Tag2_Text_Comment;
    FtOption FT_Option1 = FtOption::Both;
    bool FT_Check_Autoselect = false;
};

class FilenameTagger {
public:
    explicit FilenameTagger(TagEditContext& c) : c_(c) {}

    // Loads a track: its name's word runs, then its ID3v2 tag. `folder` ends
    // in "/"; `index` is its library row or its place in the folder list.
    void InitFilenameTag(const QString& path, const QString& folder, const QString& file, int index,
                         bool fromLibrary);
    // The selected library row, as a click in the list gives it.
    bool Load_Library_Row(int row);
    // A track picked in the main window: its library row (-1 from the
    // playlist, where a track without a row is stepped over in its folder).
    void Follow_Selection(const QString& path, int row);

    // The picture FT_Cover_Tag shows: the file of the current choice, or ""
    // for the empty default picture.
    QString Load_FT_Cover() const;
    // A click on the cover: no cover, the tag's cover, the chosen file, ...
    void Cover_Click();
    // A chosen JPEG becomes the cover to write. False, with a message, for a
    // file that holds no JPEG picture.
    bool Choose_Cover(const QString& jpeg);
    // FT_CommandCover: the tag windows' JPEG dialog, then Choose_Cover.
    bool FT_CommandCover();

    // A pick in FT_Tag2_Combo_Genre.
    FtFocus Genre_Click(int index);
    // Typing into the Track and Year boxes: digits only, 2 and 4 at most.
    static QString Digits_Typed(const QString& text, int limit);

    // FT_Command_Write_Tag. False when a write failed (the user was told).
    bool Write_Tag();
    // FT_Command_Next / FT_Command_Previous.
    void Step(int by);
    // FilenameText double-click: a folder of MP3 files to step through.
    void Choose_Folder();
    // The folder's "*.mp3" files, sorted by name.
    static QStringList Folder_Tracks(const QString& folder);

    FilenameTagForm form;
    // The track on show.
    QString Path, Folder, File_Name;
    int List_Index = -1;
    bool From_Library = true;
    QString Tag_Artist, Tag_Album, Tag_Title;
    // Where the last command wants the focus.
    FtFocus focus = FtFocus::None;
    // Told after a load, so that a window shows the new state.
    std::function<void()> loaded;

private:
    void Read_FT_Tag();
    void Fill_Fields();
    QString coverFile() const;

    TagEditContext& c_;
};

}  // namespace sonorit
