// Replays every input kept beside the fuzz harnesses, the crashes found
// included, through the same entries; under the sanitizer build this is
// the regression run of the fuzzers.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tags/fuzz_entries.h"

using namespace sonorit;

namespace {
int replay(const char* harness, void (*entry)(ByteSource&))
{
    const QDir dir(QStringLiteral(SONORIT_SOURCE_DIR "/fuzz/corpus/") + QLatin1String(harness));
    int count = 0;
    for (const QString& name : dir.entryList(QDir::Files)) {
        QFile f(dir.filePath(name));
        if (!f.open(QIODevice::ReadOnly))
            continue;
        MemorySource src(f.readAll());
        SCOPED_TRACE(name.toStdString());
        entry(src);
        ++count;
    }
    return count;
}
}  // namespace

TEST(FuzzCorpus, EveryKeptInputRunsThrough)
{
    EXPECT_GT(replay("fuzz_tag_walk", Exercise_Tag_Walk), 0);
    EXPECT_GT(replay("fuzz_sylt", Exercise_Sylt), 0);
    EXPECT_GT(replay("fuzz_mpeg_search", Exercise_Mpeg_Search), 0);
}
