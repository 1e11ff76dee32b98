#pragma once
// A clean copy of a file's audio: no ID3v2 tag, no junk before the first
// frame. The player plays such copies, and the length measure falls back on
// one when the frames cannot be counted.
#include <QString>

#include "byte_source.h"

class QIODevice;

namespace sonorit {

// True if `target` now holds the audio of `source` from its first frame to
// its end, an ID3v1 tag included. A source without a frame leaves `target`
// alone; a read or write failure removes the target it had begun.
bool Strip_Tag2(const QString& source, const QString& target);
bool Strip_Tag2(ByteSource& source, QIODevice& target);

}  // namespace sonorit
