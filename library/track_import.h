#pragma once
// Import: a file is copied into the library's "Quarantaine" folder, enters
// the library from there, and moves on to the folder its tags name when they
// say enough (an album, and an artist unless it is a various-artists track).
// The source is never touched, except that a confirmed overwrite in move mode
// deletes it.
#include <QString>
#include <set>
#include <utility>

#include "library/library_state.h"

namespace sonorit {

// Adds the file as it lies to the Trackfile and MP3_List; false after
// "Add MP3 Error", with the ID given back.
bool Add_MP3(LibraryContext& c, const QString& path);

// The import of one file that Is_Mpeg accepted: copy into Quarantaine (or ask
// "File exists"), add, place. True when the track is in the library.
bool Import_Track(LibraryContext& c, const QString& source);

void mnu_Library_Add_MP3(LibraryContext& c);
void mnu_Library_Scan_Folder(LibraryContext& c);
void mnu_Library_Scan_Tree(LibraryContext& c);
// Imports the mp3 files of a folder, and of all folders below it when
// `recursive` is set, skipping the library's own Main Folder.
void DirectoryScan(LibraryContext& c, const QString& folder, bool recursive);

// The subfolders of a folder in name order and its "*.mp3" files, as the
// folder walks of import and refresh see them. Hidden ones (dot names) are
// left out, as a folder list on the desktop leaves them out.
QStringList Sub_Folders(const QString& folder);
QStringList Mp3_Files(const QString& folder);
// One raw pass over a folder: the entries whose names are not valid UTF-8,
// which no folder listing of Qt shows (their undecodable bytes shown as
// replacement characters), and whether a killed copy left a part there.
struct RawFolder {
    QStringList undecodable;
    bool partials = false;
};
RawFolder Read_Raw_Folder(const QString& folder);

// Keeps a folder walk from entering one folder twice: a link that leads back
// up the tree would otherwise never let it end.
class VisitedFolders {
public:
    // False when the folder was entered before (or cannot be looked at).
    bool enter(const QString& folder);

private:
    std::set<std::pair<quint64, quint64>> seen_;  // device and inode
};

}  // namespace sonorit
