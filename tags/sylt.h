#pragma once
// Synced lyrics (SYLT) for the player's lyric window.
#include <QString>

#include "byte_source.h"
#include "tag_state.h"

namespace sonorit {

// Walks the tag to the first SYLT frame and parses it into state.Lyrics.
// False without a v2.3 tag, without a SYLT frame before an unknown name, or
// when the frame cannot be parsed.
bool Read_Synced_Lyrics(TagState& state, ByteSource& src);
bool Read_Synced_Lyrics(TagState& state, const QString& path);

// The SYLT frame whose header stands at the position. On false nothing is
// loaded.
bool Parse_SYLT(LyricState& lyrics, ByteSource& src, qint64 position);

}  // namespace sonorit
