#include "fuzz_entries.h"

namespace sonorit {

void Exercise_Tag_Walk(ByteSource&) {}
void Exercise_Sylt(ByteSource&) {}
void Exercise_Mpeg_Search(ByteSource&) {}

}  // namespace sonorit
