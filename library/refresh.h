#pragma once
// Refresh brings the library in line with the disk under its Main Folder:
// tracks whose files are gone and duplicates leave, unknown files come in,
// changed files are read again. The list sorted by folder and name is merged
// with a scan sorted the same way in one pass, and only folders that hold more
// mp3 files than the library knows of are read.
#include <QString>

#include "library/library_state.h"

namespace sonorit {

struct RefreshCounts {
    int removed = 0;
    int refreshed = 0;
    int added = 0;
};

RefreshCounts mnu_Library_Refresh(LibraryContext& c);

// Reads the track of row `index` again from its file and stores the row.
void Update_Track_From_File(LibraryContext& c, const QString& path, int index);

}  // namespace sonorit
