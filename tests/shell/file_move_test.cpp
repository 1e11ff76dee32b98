// Moving a file within one file system and across two: the file arrives whole
// with its time, or stays where it was.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sys/stat.h>

#include "shell/durable_file.h"
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

TEST(DurableFile, AWriteThatFailsLeavesTheOldFileAndNoPartOfTheNew)
{
    TempEnv env;
    const QString path = env.path("Trackfile000.tri");
    const QByteArray old = QByteArray("old record ").repeated(100);
    writeFile(path, old);
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup);
    const auto leftovers = [&] { return QDir(env.root()).entryList({"*sonorit-partial*"}, QDir::Files | QDir::Hidden); };
    writeFile(env.path("big"), QByteArray(100000, 'b'));
    {
        FileSizeLimit full(4096);  // the disk fills up on the way
        QString why;
        EXPECT_FALSE(Write_File_Durably(path, QByteArray(100000, 'n'), &why));
        EXPECT_FALSE(why.isEmpty());  // the system's reason, for the message
        EXPECT_FALSE(copyFileKeepingTime(env.path("big"), path));
    }
    EXPECT_EQ(readFile(path), old);
    EXPECT_EQ(leftovers(), QStringList());

    // An abandoned file goes; a finished one takes the old one's permissions.
    {
        DurableFile abandoned(path);
        ASSERT_TRUE(abandoned.open());
        abandoned.write("half");
    }
    EXPECT_EQ(leftovers(), QStringList());
    ASSERT_TRUE(Write_File_Durably(path, "new"));
    EXPECT_EQ(readFile(path), "new");
    struct stat st {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);

    // A leftover of a killed writer is removed; one still being written stays.
    DurableFile live(path);
    ASSERT_TRUE(live.open());
    writeFile(env.path(".Trackfile000.tri.sonorit-partial-dead01"), "dead");
    Remove_Partial_Files(env.root());
    EXPECT_EQ(leftovers().size(), 1);
    live.cancelWriting();
}
