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

// Around a run over many rows: the records of the moved tracks are written
// every few hundred rows and at the end, in one pass over the Trackfile each.
// A failure is reported once, naming the first track of the pass.
void Begin_Record_Batch(LibraryContext& c);
void End_Record_Batch(LibraryContext& c);

}  // namespace sonorit
