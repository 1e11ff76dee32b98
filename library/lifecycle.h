#pragma once
// Creating and deleting libraries and rewriting the library file. Only the
// .vkt file, the Trackfile and the IDfile are touched: a library's tracks and
// folders stay as they are.
#include "library/library_state.h"

namespace sonorit {

void mnu_Library_New(LibraryContext& c);
// The dialogue and the files of a new library, then the refresh that fills it.
void Create_Library(LibraryContext& c);
void mnu_Library_Delete(LibraryContext& c);
// The .vkt file written anew: section GENERAL, then the naming rules.
void Write_Library_File(LibraryContext& c);

// "Trackfile000.tri" and "IDfile000.tri" in the data folder, or the first
// pair of higher numbers of which neither file exists.
void Choose_Library_File_Names(LibraryContext& c);

}  // namespace sonorit
