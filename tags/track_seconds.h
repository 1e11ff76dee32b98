#pragma once
// The length of a track: from the Xing header or the frame walk when the
// first frame is sound, from a real decoder run when it is not.
#include <QString>

#include "byte_source.h"
#include "duration_port.h"
#include "tag_state.h"

namespace sonorit {

// Whole seconds, 0 for unknown; a length that does not fit the old 16-bit
// value (above 32767) is unknown too. A damaged file is stripped to
// "CheckTime.mp3" in `dataFolder` (ending in "/") and measured by `probe`;
// the copy is deleted again afterwards. Without a probe that step gives 0.
int Get_Track_Seconds(const QString& path, const QString& dataFolder, DurationProbe* probe);
// The same for a file already open as `src` (its frame count is shared with
// other questions about it); `path` is what a decoder run is given.
int Get_Track_Seconds(ByteSource& src, const QString& path, const QString& dataFolder, DurationProbe* probe);

// The decoder's answer alone: the audio stripped to "CheckTime.mp3" in
// `dataFolder` (made if missing), measured, rounded half to even, the copy
// deleted. 0 when
// there is no frame, no probe or no answer.
int Decoder_Track_Seconds(const QString& path, const QString& dataFolder, DurationProbe* probe);

// The filename tagger's variant: fills Frames (walked, if empty), Length (if
// empty, milliseconds) and Time of FT_Tag2_Fields from the frames alone.
void Get_Filename_Tag_Time(TagState& state, const QString& path);

}  // namespace sonorit
