#pragma once
// Moving the whole library folder with its tracks, covers and every other
// file in it to a new place, and pointing the library at it. Within one file
// system each file is renamed; across file systems it is copied complete
// before its source goes, so that every track is whole in at least one place
// at every moment.
#include "library/library_state.h"

namespace sonorit {

// False when a failure stopped the command (the user has been told which file
// and why); true when it ran to its end or the user stopped it by an answer.
bool mnu_Library_Move(LibraryContext& c);

}  // namespace sonorit
