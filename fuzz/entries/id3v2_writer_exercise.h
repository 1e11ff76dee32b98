#pragma once
// The writers run over arbitrary bytes, as the fuzzer and the replay of its
// corpus do, with the checks that any file they produce must pass.
#include <QString>

#include "tags/byte_source.h"

namespace sonorit {

// Runs the three writers and the strip over `input`. Returns what was wrong
// with a file they produced, or "" when every produced file held: a v2.3
// header whose size ends where the audio is found, the audio unchanged, the
// strip of old and new file equal, and a second write of the new file
// giving the same bytes.
QString Exercise_Tag_Writer(ByteSource& input);

}  // namespace sonorit
