// On a FAT medium two spellings of a name are one file: a rename that changes
// only the letter case renames the track and never deletes it, even when
// every question is answered yes. (Relocation renames folders, which the FUSE
// FAT driver at hand does not do faithfully, so it is not tried here.)
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include "cli_run.h"
#include "tests/support/fat_mount.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

TEST(CliCaseInsensitiveDisk, ACaseOnlyChangeRenamesAndNeverDeletes)
{
    TempEnv env;
    FatMount fat(env.path("fat.img"), env.path("Music"));
    if (!fat.mounted())
        GTEST_SKIP() << fat.reason().toStdString();
    const QByteArray one = taggedMp3({"Abba", "Gold", "1", "One", {}, {}}, {0.2});
    const QByteArray two = taggedMp3({"Abba", "Gold", "2", "Two", {}, {}}, {0.2});
    writeFile(env.path("Music/A/Abba/Gold/abba - gold - 01 - one.mp3"), one);
    writeFile(env.path("Music/A/Abba/Gold/Abba - Gold - 02 - Two.mp3"), two);
    const QString vkt = env.path("Lib.vkt");
    ASSERT_EQ(runCli({"--dialog", env.path("Music"), "new", vkt}).exitCode, 0);

    const CliRun renamed = runCli({"--answer", "yes", "rename", vkt, "all"});
    EXPECT_EQ(renamed.exitCode, 0);
    EXPECT_FALSE(renamed.err.contains("Confirm replacement")) << renamed.err.toStdString();

    EXPECT_EQ(QDir(env.path("Music/A")).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{"Abba"});
    EXPECT_EQ(QDir(env.path("Music/A/Abba/Gold")).entryList(QDir::Files),
              (QStringList{"Abba - Gold - 01 - One.mp3", "Abba - Gold - 02 - Two.mp3"}));
    EXPECT_EQ(readFile(env.path("Music/A/Abba/Gold/Abba - Gold - 01 - One.mp3")), one);
    EXPECT_EQ(readFile(env.path("Music/A/Abba/Gold/Abba - Gold - 02 - Two.mp3")), two);
    const QStringList rows = rowPaths(runCli({"open", vkt}));
    ASSERT_EQ(rows.size(), 2);
    for (const QString& path : rows)
        EXPECT_TRUE(QFileInfo(path).isFile()) << path.toStdString();
}
