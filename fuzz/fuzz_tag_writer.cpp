#include <cstdio>
#include <cstdlib>

#include "fuzz/entries/id3v2_writer_exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    sonorit::MemorySource src(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    const QString problem = sonorit::Exercise_Tag_Writer(src);
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "%s\n", problem.toLocal8Bit().constData());
        std::abort();
    }
    return 0;
}
