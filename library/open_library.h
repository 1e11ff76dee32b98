#pragma once
// Opening a library turns its three files into MP3_List, the only in-memory
// form of the track list. Closing empties the list and the library state.
#include <QString>

#include "library/library_state.h"

namespace sonorit {

enum class OpenVia { Path, Menu };

// The flow for a given path (start-up, command line). True when the library
// opened; false after "Open Library Failure".
bool Open_Library(LibraryContext& c, const QString& path, OpenVia via = OpenVia::Path);
// The menu entry: file dialog, then the same flow.
bool mnu_Library_Open(LibraryContext& c);
void Close_Library(LibraryContext& c);
// Opens the library if the path is not empty, exists and ends exactly in
// ".vkt"; else leaves no library.
void Check_Open_Library_File(LibraryContext& c, const QString& path);

// Finds and selects a row: `where` 0 searches the Artist column, 1 every
// other column; start mode 1 searches from the top, 2 wraps around once.
int MP3Find(TrackList& list, const QString& text, int where, int startMode);

}  // namespace sonorit
