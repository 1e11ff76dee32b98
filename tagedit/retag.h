#pragma once
// Quick Retag: the ID3v2.3 tag of a track rewritten from what it already
// says, in the program's own layout and under the current tag options. Two
// things are never lost on the way: a tag the program cannot read (another
// version while those are not read, a damaged header) stays in the file byte
// for byte, and a various-artists track stays one.
#include <QString>

#include "tagedit/tag_edit_context.h"

namespace sonorit {

// What one run has left alone; told once at its end.
struct RetagRun {
    int unreadable = 0;  // tracks whose tag could not be read
    int failed = 0;      // writes that failed (told at once)
};

enum class RetagResult { Done, Missing, Unreadable, Failed };

// The file begins with "ID3" but holds no tag the reader takes (with the
// setting that reads ID3v2.4 and v2.2 tags as it stands), or one whose size
// runs past the end of the file.
bool Tag_Unreadable(const TagState& tags, const QString& path);

// Retags the file of library row `row` and updates the row and its record.
RetagResult Retag_Row(TagEditContext& c, int row, RetagRun& run);
// Retags a file; the library row with its Folder and Filename follows, if
// there is one.
RetagResult Retag_File(TagEditContext& c, const QString& path, RetagRun& run);
// Retags the mp3 files of `folder` (subfolders first when `recursive`), with
// the progress texts.
void DirQuickTag(TagEditContext& c, const QString& folder, bool recursive, RetagRun& run);

// "N tracks were left as they were: their tag could not be read", titled
// "Quick Retag", when N is above 0.
void Tell_Retag_Run(UiPort& ui, const RetagRun& run);
QString Retag_Unreadable_Text(int count);
QString Retag_Title();

// The menu commands, each returning what its run left undone; the library
// ones do nothing without a selected row.
RetagRun mnu_Retag_Track(TagEditContext& c);
RetagRun mnu_Retag_Selection(TagEditContext& c);
RetagRun mnu_Retag_Album(TagEditContext& c);
RetagRun mnu_Retag_All(TagEditContext& c);
// A folder from the browse dialog; the library is refreshed afterwards.
RetagRun mnu_Retag_Folder(TagEditContext& c);
RetagRun mnu_Retag_Tree(TagEditContext& c);

}  // namespace sonorit
