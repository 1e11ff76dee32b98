#pragma once
// Track IDs: a track's ID is its slot in the Trackfile. Free slots are kept in
// the IDfile, a plain sequence of 4-byte little-endian integers, and handed
// out again lowest first.
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

#include "library/library_state.h"

namespace sonorit {

QByteArray Encode_IDfile(const std::vector<std::int32_t>& ids);
bool Write_IDfile(LibraryContext& c);
// With `albumCount` >= 0, ALBUM_COUNT goes into the same rewrite of the
// library file.
bool Write_ID_Count(LibraryContext& c, int albumCount = -1);
bool Write_Album_Count(LibraryContext& c);

// "TRACK " followed by the ID handed out; "" when the library already holds
// 32767 slots and none is free, so that ID_COUNT never leaves 16 bits. A new
// slot writes ID_COUNT, and `albumCount` (when >= 0) as ALBUM_COUNT with it.
QString Get_ID(LibraryContext& c, int albumCount = -1);
// Frees a track's slot: the last slot is cut off the Trackfile and ID_COUNT
// lowered, any other is blanked and its ID kept for reuse. False when the
// Trackfile could not be changed.
bool Remove_Track_Record(LibraryContext& c, int id);
// Takes a track's record and row out of the library.
void Remove_Track_Row(LibraryContext& c, int row);
// The number in an "ID" column ("TRACK 37" gives 37).
int Track_ID_Of(const QString& idColumn);

}  // namespace sonorit
