#pragma once
// The rename and relocate commands over the selected track, the selection,
// the selected track's album and the whole library. Each does nothing when
// the list is empty or no row is selected.
#include "library/library_state.h"

namespace sonorit {

void mnu_Library_Rename_Track(LibraryContext& c);
void mnu_Library_Rename_Selection(LibraryContext& c);
void mnu_Library_Rename_Album(LibraryContext& c);
void mnu_Library_Rename_All(LibraryContext& c);
void mnu_Library_Relocate_Track(LibraryContext& c);
void mnu_Library_Relocate_Selection(LibraryContext& c);
void mnu_Library_Relocate_Album(LibraryContext& c);
void mnu_Library_Relocate_All(LibraryContext& c);

}  // namespace sonorit
