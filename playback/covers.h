#pragma once
// A track's picture is the first APIC frame of its tag; the player never
// looks beside the file. The picture is unpacked into a fixed file of the
// data folder, which the window loads.
#include <QString>

#include "playback/playback_context.h"

namespace sonorit {

// Writes the tag's first picture to `target`; false (target untouched) when
// there is no v2.3 tag or no picture before the walk must stop.
bool Extract_Cover(const QString& path, const QString& target);

// "Playing.jpg" in the data folder.
QString Playing_Cover_Path(const AppState& app);

// The player's picture for a track: the old "Playing.jpg" deleted, the new
// one extracted; the view is told the file, or "" for the default picture,
// and the cover window's mnu_image_save follows. Returns the shown path.
QString Load_Play_Cover(PlaybackContext& c, const QString& path);
// The tag panel's picture from "Cover.jpg" of the data folder, or the default.
QString Load_Tag_Cover(PlaybackContext& c);

}  // namespace sonorit
