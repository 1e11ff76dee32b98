#pragma once
// The columns of a track as its file gives them: tags, length, place, date
// and size. Import and refresh both build rows this way.
#include <QString>

#include "library/library_state.h"

namespace sonorit {

// Fills every column but the ID from the file at `path`. The VA column takes
// the tag reader's "Yes" or "No" ("" when the file has no tag).
void Track_Fields_From_File(LibraryContext& c, const QString& path, TrackRow& row);

// Adds Artist, Album and Title of a row to the search lists.
void Add_Row_To_Search(LibraryContext& c, const TrackRow& row);

}  // namespace sonorit
