#pragma once
// Bringing one track's file in line with the naming rules: rename gives it the
// name the rules make and leaves it in its folder; relocate moves it to the
// folder the rules make and keeps its name. Both keep MP3_List, the Trackfile
// and the playlist's paths true.
#include "library/library_state.h"

namespace sonorit {

// False only when a move failed without a guard of its own: the command that
// called must stop; the row and its record are then unchanged.
bool Rename_Track(LibraryContext& c, int index);
// `tidy`: covers follow the track and emptied folders are removed.
bool Relocate_Track(LibraryContext& c, int index, bool tidy);

}  // namespace sonorit
