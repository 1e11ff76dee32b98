// Moving a file within one file system and across two: the file arrives whole
// with its time, or stays where it was.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sys/stat.h>

#include "shell/file_copy.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(MoveFile, ArrivesWholeOrStaysWhereItWas)
{
    TempEnv env;
    const QByteArray bytes = QByteArray("audio").repeated(20000);
    const QString source = env.path("a.mp3");
    writeFile(source, bytes);
    const QDateTime old = QDateTime::fromSecsSinceEpoch(1000000000);
    { QFile f(source); f.open(QIODevice::ReadWrite); f.setFileTime(old, QFileDevice::FileModificationTime); }

    ASSERT_TRUE(moveFile(source, env.path("b.mp3")));
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(readFile(env.path("b.mp3")), bytes);
    EXPECT_FALSE(moveFile(env.path("b.mp3"), env.path("no such folder/b.mp3")));
    EXPECT_EQ(readFile(env.path("b.mp3")), bytes);

    struct stat shm {}, here {};
    if (stat("/dev/shm", &shm) != 0 || stat(QFile::encodeName(env.root()).constData(), &here) != 0
        || shm.st_dev == here.st_dev)
        GTEST_SKIP() << "no second file system to move across";
    const QTemporaryDir other(QStringLiteral("/dev/shm/sonorit-move-XXXXXX"));
    {
        FileSizeLimit full(1000);  // the other disk fills up during the copy
        EXPECT_FALSE(moveFile(env.path("b.mp3"), other.path() + "/c.mp3"));
    }
    EXPECT_EQ(readFile(env.path("b.mp3")), bytes);
    EXPECT_TRUE(QDir(other.path()).isEmpty());

    ASSERT_TRUE(moveFile(env.path("b.mp3"), other.path() + "/c.mp3"));
    EXPECT_FALSE(QFileInfo::exists(env.path("b.mp3")));
    EXPECT_EQ(readFile(other.path() + "/c.mp3"), bytes);
    EXPECT_EQ(QFileInfo(other.path() + "/c.mp3").lastModified(), old);
}
