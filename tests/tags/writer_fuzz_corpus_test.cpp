// Replays the inputs kept beside the writer's fuzz harness, its findings
// included, with the same checks the harness makes.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tags/id3v2_writer_exercise.h"

using namespace sonorit;

TEST(WriterFuzzCorpus, EveryKeptInputWritesSoundFiles)
{
    const QDir dir(QStringLiteral(SONORIT_SOURCE_DIR "/fuzz/corpus/fuzz_tag_writer"));
    int count = 0;
    for (const QString& name : dir.entryList(QDir::Files)) {
        QFile f(dir.filePath(name));
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
        MemorySource src(f.readAll());
        EXPECT_EQ(Exercise_Tag_Writer(src).toStdString(), "") << name.toStdString();
        ++count;
    }
    EXPECT_GT(count, 0);
}
