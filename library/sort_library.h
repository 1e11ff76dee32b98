#pragma once
// Rewriting the library files from the list: records in list order, IDs 1 to
// the count, no free slot. Also the repair that opening a damaged library runs.
#include "library/library_state.h"

namespace sonorit {

void mnu_Library_Sort(LibraryContext& c);
// True when the files were rewritten; after five failed attempts the files
// stay as they were and "ID Sort failure" is shown.
bool Sort_Library_File(LibraryContext& c);

// The Trackfile written anew from the list, record i holding row i as
// "TRACK i"; replaced only when complete. False leaves it as it was.
bool Write_Records_In_List_Order(LibraryContext& c);
// After such a rewrite: the ID column of each row, no free ID, both counts.
void Renumber_List_And_Counts(LibraryContext& c);

}  // namespace sonorit
