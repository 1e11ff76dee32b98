#pragma once
// The only builders of target folders and file names. They read the working
// lists of the naming rules, which outside the open options window are the
// accepted rules of the open library.
#include <QString>

#include "library/library_state.h"

namespace sonorit {

// The target folder of a track under `libraryFolder` (which ends in "/"),
// without a trailing "/". `list` is 2 (artist albums) or 3 (various artists).
// Each level is created on disk as it is added; errors pass in silence.
QString Make_Track_Folder(const NamingRules& rules, const QString& libraryFolder, int list, const QString& artist,
                          const QString& album, const QString& genre, const QString& year);
QString Make_Track_Folder(LibraryContext& c, int list, const QString& artist, const QString& album,
                          const QString& genre, const QString& year);

// The file name with ".mp3" and without a folder. `list` is 0 or 1.
QString Make_Track_Filename(const NamingRules& rules, int list, int tracknumber, const QString& artist,
                            const QString& album, const QString& title, const QString& genre, const QString& year);
// The same from row `index` of MP3_List.
QString MakeNewTrack(LibraryContext& c, int index, int list);

// The preview of a list as the options window shows it: a file name of the
// literal detail names for lists 0 and 1, a folder pattern for 2 and 3; ""
// for any other list.
QString MakePreview(const NamingRules& rules, int list);

// The number in a Track column as the file name builder takes it: a text that
// is not a 16-bit whole number counts as 0.
int Track_Number_Of(const QString& column);

}  // namespace sonorit
