#pragma once
// The backup mirrors the library folder into the backup folder the user
// chose for this library: new tracks are copied, tracks newer than their copy
// replace it, copies that no track accounts for go. Restore brings back what
// the library folder lacks and what is newer in the backup, then refreshes.
// Copies keep their source's modification time and replace nothing until
// they are complete on the disk.
#include "library/library_state.h"

namespace sonorit {

// False when a failure stopped the command (the user has been told which file
// and why); true when it ran to its end or the user stopped it by an answer.
bool mnu_Library_Backup(LibraryContext& c);
bool mnu_Library_Restore(LibraryContext& c);

}  // namespace sonorit
