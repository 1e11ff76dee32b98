#pragma once
// The rename and relocate commands over the selected track, the selection,
// the selected track's album and the whole library. Each does nothing when
// the list is empty or no row is selected.
#include <vector>

#include "library/library_state.h"

namespace sonorit {

// The messages shown when the selected track lacks what finds its album.
struct AlbumMessages {
    QString albumTitle, albumText;    // a various-artists track without album
    QString artistTitle, artistText;  // any other track without artist or album
};

// The rows of the selected track's album: the selected row first, then the
// other rows of the same album (and artist, unless it is a various-artists
// album) by rising index, compared exactly. Empty after the message that
// tells what is missing.
std::vector<int> Album_Rows(LibraryContext& c, const AlbumMessages& unknown);

void mnu_Library_Rename_Track(LibraryContext& c);
void mnu_Library_Rename_Selection(LibraryContext& c);
void mnu_Library_Rename_Album(LibraryContext& c);
void mnu_Library_Rename_All(LibraryContext& c);
void mnu_Library_Relocate_Track(LibraryContext& c);
void mnu_Library_Relocate_Selection(LibraryContext& c);
void mnu_Library_Relocate_Album(LibraryContext& c);
void mnu_Library_Relocate_All(LibraryContext& c);

}  // namespace sonorit
