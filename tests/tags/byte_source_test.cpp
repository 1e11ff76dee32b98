// Bytes in: file reads equal memory reads, and the fuzzers' kept inputs run through.
#include <functional>

#include "fixtures.h"
#include "fuzz/entries/fuzz_entries.h"
#include "fuzz/entries/id3v2_writer_exercise.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(ByteSource, FileReadsEqualMemoryReadsAcrossBlocksAndPastTheEnd)
{
    QByteArray data(30000, '\0');
    for (int i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>((i * 7 + i / 256) & 0xFF);
    TempEnv env;
    writeFile(env.path("data.bin"), data);
    FileSource file(env.path("data.bin")), missing(env.path("missing"));
    EXPECT_TRUE(file.isOpen() && !missing.isOpen() && missing.bytesAt(0, 16).isEmpty());
    MemorySource memory(data);
    ASSERT_EQ(file.size(), memory.size());
    for (qint64 off : {0, 1, 8191, 8192, 16383, 29990, 29999, 30000, -1}) {
        for (qint64 n : {1, 4, 4096, 8193, 20000, 0, -5})
            EXPECT_EQ(file.bytesAt(off, n), memory.bytesAt(off, n)) << off << "+" << n;
    }
}

TEST(FuzzCorpus, EveryKeptInputRunsThrough)
{
    const auto writers = [](ByteSource& src) { EXPECT_EQ(Exercise_Tag_Writer(src).toStdString(), ""); };
    const std::pair<const char*, std::function<void(ByteSource&)>> harnesses[] = {
        {"fuzz_tag_walk", Exercise_Tag_Walk}, {"fuzz_sylt", Exercise_Sylt},
        {"fuzz_mpeg_search", Exercise_Mpeg_Search}, {"fuzz_tag_writer", writers}};
    for (const auto& [harness, entry] : harnesses) {
        const QDir dir(QStringLiteral(SONORIT_SOURCE_DIR "/fuzz/corpus/") + harness);
        EXPECT_FALSE(dir.isEmpty()) << harness;
        for (const QString& name : dir.entryList(QDir::Files)) {
            SCOPED_TRACE(name.toStdString());
            MemorySource src(readFile(dir.filePath(name)));
            entry(src);
        }
    }
}
