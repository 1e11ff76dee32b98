#include "fuzz/entries/fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    sonorit::MemorySource src(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    sonorit::Exercise_Sylt(src);
    return 0;
}
