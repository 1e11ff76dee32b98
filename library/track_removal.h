#pragma once
// Taking tracks out of the library (remove: the file stays), erasing them
// (the file goes too) and copying their files to a folder of the user's
// choice (the library stays as it is), each over the selected track, the
// selection and the selected track's album. Each does nothing without a
// selected row.
#include "library/library_state.h"

namespace sonorit {

// Each returns false when a failure was reported to the user.
bool mnu_Library_Remove_MP3(LibraryContext& c);
bool mnu_Library_Remove_Selection(LibraryContext& c);
bool mnu_Library_Remove_Album(LibraryContext& c);
bool mnu_Tracks_Delete_Track(LibraryContext& c);
bool mnu_Tracks_Delete_Selection(LibraryContext& c);
bool mnu_Tracks_Delete_Album(LibraryContext& c);
bool mnu_Tracks_Copy_Track(LibraryContext& c);
bool mnu_Tracks_Copy_Selection(LibraryContext& c);
bool mnu_Tracks_Copy_Album(LibraryContext& c);

}  // namespace sonorit
