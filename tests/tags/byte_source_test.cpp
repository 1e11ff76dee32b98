// The cached file source must give the same bytes as memory for any read,
// across its block edges and past the end.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tags/byte_source.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;

TEST(ByteSource, FileReadsEqualMemoryReads)
{
    QByteArray data(30000, '\0');
    for (int i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>((i * 7 + i / 256) & 0xFF);
    QTemporaryDir dir;
    test::writeFile(dir.filePath("data.bin"), data);
    FileSource file(dir.filePath("data.bin"));
    MemorySource memory(data);
    ASSERT_EQ(file.size(), memory.size());
    for (qint64 off : {0, 1, 8191, 8192, 16383, 29990, 29999, 30000, -1}) {
        for (qint64 n : {1, 4, 4096, 8193, 20000, 0, -5})
            EXPECT_EQ(file.bytesAt(off, n), memory.bytesAt(off, n)) << off << "+" << n;
    }
    FileSource missing(dir.filePath("missing"));
    EXPECT_FALSE(missing.isOpen());
    EXPECT_EQ(missing.bytesAt(0, 16), QByteArray());
}
