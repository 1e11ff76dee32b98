#pragma once
// What the commands that mirror or move the library folder share: the list
// in folder order, the check that puts every track inside the Main Folder,
// and the place of a track's folder below another root.
#include <QString>

#include "library/library_state.h"

namespace sonorit {

// MP3_List sorted by Folder, and by Filename within a folder; row 1 selected.
void Sort_By_Place(TrackList& list);

// Relocates every track whose folder lies outside the Main Folder (and
// outside `alsoInside`, when given), with the progress texts of the check.
// False when a relocation failed in a way that must stop the command (the
// user has been told).
bool Check_Track_Locations(LibraryContext& c, const QString& alsoInside = QString());

// Whether a track's folder lies in `root` (ending in "/").
bool Folder_Is_Inside(const QString& folder, const QString& root);

// The folder `folder` takes below `newRoot` when `oldRoot` (both ending in
// "/") is replaced by it; a folder equal to the old root (without its slash)
// gives the new root without its slash.
QString Folder_Below(const QString& folder, const QString& oldRoot, const QString& newRoot);

}  // namespace sonorit
