#pragma once
// After a tag write the library row, its Trackfile record and the playlist
// rows of the same file show what the file now holds.
#include <QString>

#include "tagedit/tag_edit_context.h"

namespace sonorit {

// The MP3_List row whose Folder and Filename make `path`, -1 if none.
int Library_Row_Of(const TrackList& list, const QString& path);

// The tag columns a write sets on the library row.
struct RowTags {
    QString Artist, Album, Track, Title, Time, Year, Genre;
    bool VA = false;  // the column says "Yes" or "No", as a read of the file gives it
};

// Last Changed and Filelength of the row from the file, then the row's
// record replaced in the Trackfile at its ID. False when the record could
// not be written (the Trackfile stays as it was).
bool Store_Row_Record(LibraryContext& c, int row);

// The row of `path` (if any) takes `tags` and its record is stored; every
// playlist entry of `path` shows Artist, Album, Title and Time. False only
// when a record could not be written. A caller that knows the library row
// passes it, which spares a search of the list per track in a batch.
constexpr int kFindRow = -2;
bool Follow_Tag_Write(TagEditContext& c, const QString& path, const RowTags& tags, int row = kFindRow);

}  // namespace sonorit
