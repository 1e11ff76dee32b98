#pragma once
// Rewriting the library files from the list: records in list order, IDs 1 to
// the count, no free slot. Also the repair that opening a damaged library runs.
#include "library/library_state.h"

namespace sonorit {

void mnu_Library_Sort(LibraryContext& c);
// True when the files were rewritten; after five failed attempts the files
// stay as they were and "ID Sort failure" is shown.
bool Sort_Library_File(LibraryContext& c);

}  // namespace sonorit
