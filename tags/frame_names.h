#pragma once
// The reader's table of frame names: the program's only notion of a valid
// frame. Names are compared in the order of the classes below.
#include <QByteArray>

namespace sonorit {

enum class FrameClass {
    Read,   // TPE1 TALB TRCK TYER TIT2 TPE2 TLEN TCON SYLT APIC TFRM COMM
    Known,  // AENC ... WPUB: known and passed by
    OtherTW,  // any other name beginning with "T" or "W": passed by as well
    Stop,   // anything else: the start of padding or garbage
};

FrameClass Classify_Frame(const QByteArray& id);

// Whether the name stands in the list of known frames that the reader passes
// by (the second class), whatever it also is in the first.
bool Is_Known_Frame(const QByteArray& id);

}  // namespace sonorit
