// What the library commands refuse rather than guess, and names a library
// cannot keep: each refusal stops at once with a clear message and leaves
// nothing behind; hostile names are reported and never break a record or
// lead out of the Main Folder; on a FAT medium, where two spellings of a name
// are one file, a rename that changes only the letter case never deletes.
#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cli_run.h"
#include "tests/support/fat_mount.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

QStringList libraryFilesIn(const TempEnv& env)
{
    return QDir(env.path(".local/share/ZEVSonorit")).entryList({"*.tri"}, QDir::Files);
}

// A library file whose Trackfile is `trackfile`.
void writeVkt(const QString& vkt, const QString& trackfile, const QString& main)
{
    writeFile(vkt, ("[GENERAL]\nALBUMLIB_NAME=" + trackfile + "\nFREEID_NAME=" + trackfile + ".ids\nID_COUNT=3\n"
                    "ALBUM_COUNT=3\nLIB_FOLDER=" + main + "/\n").toUtf8());
}

}  // namespace

TEST(CliRefusals, BadFoldersAndSpecialFilesAreRefusedAndLeaveNothing)
{
    const struct {
        const char* what;
        QStringList args;  // "@" stands for the home
        int exitCode;
        const char* error;
    } rows[] = {
        {"a file as Main Folder", {"--dialog", "@/file.txt", "new", "@/L.vkt"}, 2, "not an existing folder"},
        {"a missing Main Folder", {"--dialog", "@/nowhere", "new", "@/L.vkt"}, 2, "not an existing folder"},
        {"a file as Backup folder", {"--answers", "ok,yes", "--dialog", "@/Main", "--dialog", "@/file.txt", "new", "@/L.vkt"},
         2, "not an existing folder"},
        {"new over a folder", {"--dialog", "@/Main", "new", "@/dir.vkt"}, 2, "regular file"},
        {"open of a pipe", {"open", "@/pipe.vkt"}, 2, "regular file"},
        {"a Trackfile that is a device", {"open", "@/zero.vkt"}, 1, ""},
        {"a Trackfile that is a pipe", {"open", "@/fifo-track.vkt"}, 1, ""},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.what);
        TempEnv env;
        QDir().mkpath(env.path("Main"));
        QDir().mkpath(env.path("dir.vkt"));
        writeFile(env.path("file.txt"), "text");
        ::mkfifo(QFile::encodeName(env.path("pipe.vkt")).constData(), 0600);
        ::mkfifo(QFile::encodeName(env.path("track.fifo")).constData(), 0600);
        writeVkt(env.path("zero.vkt"), "/dev/zero", env.path("Main"));
        writeVkt(env.path("fifo-track.vkt"), env.path("track.fifo"), env.path("Main"));
        QStringList args = r.args;
        args.replaceInStrings("@", env.root());

        QElapsedTimer took;
        took.start();
        const CliRun run = runCli(args);
        EXPECT_LT(took.elapsed(), 10000);
        EXPECT_EQ(run.exitCode, r.exitCode) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(r.error)) << run.err.toStdString();
        EXPECT_FALSE(QFileInfo::exists(env.path("L.vkt")));
        EXPECT_TRUE(QFileInfo(env.path("dir.vkt")).isDir());
        EXPECT_TRUE(QFileInfo(env.path("pipe.vkt")).exists() && !QFileInfo(env.path("pipe.vkt")).isFile());
        EXPECT_EQ(libraryFilesIn(env), QStringList());
    }
}

TEST(CliRefusals, NamesTheLibraryCannotKeepAreReportedAndDotsNeverLeaveTheFolder)
{
    TempEnv env;
    const QString music = env.path("Music");
    QDir().mkpath(music);
    writeFile(music + "/a|b.mp3", taggedMp3({"Abba", "Gold", "1", "Pipe", {}, {}}, {0.2}));
    const QByteArray latin1 = QFile::encodeName(music) + "/caf\xe9.mp3";  // not UTF-8
    const int fd = ::open(latin1.constData(), O_WRONLY | O_CREAT, 0644);
    const QByteArray audio = taggedMp3({"Cher", "Hits", "2", "Latin", {}, {}}, {0.2});
    ASSERT_EQ(::write(fd, audio.constData(), size_t(audio.size())), audio.size());
    ::close(fd);
    writeFile(music + "/dots.mp3", taggedMp3({"..", "..", "3", "Dots", {}, {}}, {0.2}));
    writeFile(music + "/dot.mp3", taggedMp3({"Dot", ".", "4", "Dot", {}, {}}, {0.2}));
    const QString vkt = env.path("Lib.vkt");

    const CliRun made = runCli({"--dialog", music, "new", vkt});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
    const QString report = made.json.back()["text"].toString();
    EXPECT_TRUE(report.contains("2 tracks were added.")) << report.toStdString();
    EXPECT_TRUE(report.contains(music + "/a|b.mp3")) << report.toStdString();
    EXPECT_TRUE(report.contains(music + "/caf")) << report.toStdString();

    const CliRun relocated = runCli({"relocate", vkt, "all"});
    EXPECT_FALSE(relocated.err.contains("Invalid MP3 Items"));
    EXPECT_TRUE(QFileInfo(music + "/_#_/__/__/dots.mp3").isFile());
    EXPECT_TRUE(QFileInfo(music + "/D/Dot/_/dot.mp3").isFile());
    EXPECT_TRUE(QFileInfo(music + "/a|b.mp3").isFile());
    EXPECT_TRUE(QFileInfo(QFile::decodeName(latin1)).exists() || ::access(latin1.constData(), F_OK) == 0);

    // A second refresh finds nothing to add or remove, and takes away the
    // part a killed copy left.
    const QString part = music + "/D/Dot/_/.dot2.mp3.sonorit-partial-Ab12Cd";
    writeFile(part, "half a copy");
    const CliRun again = runCli({"refresh", vkt});
    EXPECT_FALSE(QFileInfo::exists(part));
    ASSERT_FALSE(again.json.empty());
    EXPECT_TRUE(again.json.back()["text"].toString().startsWith("0 tracks were removed.\r\n0 tracks were refreshed.\r\n"
                                                                "0 tracks were added."));
    EXPECT_EQ(again.out.size(), 2);
    ::unlink(latin1.constData());  // which the temporary folder's removal cannot see
}

// Every question is answered yes. (Relocation renames folders, which the FUSE
// FAT driver at hand does not do faithfully, so it is not tried here.)
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
