#pragma once
// The second half of every new tag: the old tag's frames that the options
// keep, byte for byte and in their old order.
#include "byte_source.h"

class QIODevice;

namespace sonorit {

struct KeepRules {
    bool syltIsOwn = true;           // the panel and quick writers lose SYLT like their own frames
    bool keepSylt = false;           // the filename writer keeps it with option 13
    bool frontCoversGo = false;      // a new front cover was written, or the cover removed
    bool keepFrontCovers = true;     // option 8
    bool dropOtherPictures = false;  // option 11
    bool dropUnlisted = false;       // option 12
};

enum class WalkEnd {
    Done,             // the tag ended, or a name outside the table took the rest for padding
    LowerCaseName,    // a foreign "T"/"W" frame with a lower-case letter: the write gives up
    CopyFailed,       // a kept frame could not be read whole or written
};

// Walks the old v2.3 tag of `source`, if it has one, and appends the kept
// frames to `out`. A tag of another version keeps nothing.
WalkEnd Copy_Kept_Frames(ByteSource& source, const KeepRules& rules, QIODevice& out);

}  // namespace sonorit
