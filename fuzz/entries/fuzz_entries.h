#pragma once
// One entry per parser of foreign bytes, shared by the libFuzzer harnesses
// and by the test that replays their corpus. Each runs the parser over the
// whole input in every way the program calls it and must simply return.
#include "tags/byte_source.h"

namespace sonorit {

void Exercise_Tag_Walk(ByteSource& src);
void Exercise_Sylt(ByteSource& src);
void Exercise_Mpeg_Search(ByteSource& src);

}  // namespace sonorit
