// A full disk never truncates or empties a file: each command meets a real
// ENOSPC on a small tmpfs, and afterwards every file is either its old self
// or complete, no half-written file is left, and the library still opens.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <functional>

#include "cli_run.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/small_fs.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

QByteArray song(const QString& artist, const QString& title)
{
    return taggedMp3({artist, QStringLiteral("Album"), QStringLiteral("01"), title, {}, {}}, {0.5});
}

// Every file below `folder` with its content, the filler left out.
QMap<QString, QByteArray> contentsUnder(const QString& folder)
{
    QMap<QString, QByteArray> files;
    for (const QString& rel : filesUnder(folder))
        if (!rel.endsWith(".filler"))
            files[rel] = readFile(folder + '/' + rel);
    return files;
}

}  // namespace

TEST(CliFullDisk, NoCommandLeavesAFileCutShortOrEmpty)
{
    struct Case {
        const char* name;
        const char* mountAt;  // relative to the home
        std::function<QStringList(const TempEnv&)> command;
    };
    const Case cases[] = {
        {"write-tag2 with the track on a full disk", "Music/A",
         [](const TempEnv& e) { return QStringList{"write-tag2", e.path("Music/A/x.mp3"), "--comment", "longer"}; }},
        {"relocation onto a full disk", "Music/A",
         [](const TempEnv& e) { return QStringList{"relocate", e.path("Lib.vkt"), "all"}; }},
        {"sort with a full data folder", ".local/share/ZEVSonorit",
         [](const TempEnv& e) { return QStringList{"sort", e.path("Lib.vkt")}; }},
        {"relocate all with a full data folder", ".local/share/ZEVSonorit",
         [](const TempEnv& e) { return QStringList{"relocate", e.path("Lib.vkt"), "all"}; }},
        {"add with the .vkt on a full disk", "Libs",
         [](const TempEnv& e) { return QStringList{"add", e.path("Libs/Lib.vkt"), e.path("in/new.mp3")}; }},
        {"import onto a full disk", "Music",
         [](const TempEnv& e) { return QStringList{"add", e.path("Lib.vkt"), e.path("in/new.mp3")}; }},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        TempEnv env;
        SmallFileSystem fs(env.path(k.mountAt), 1024);
        if (!fs.mounted())
            GTEST_SKIP() << fs.reason().toStdString();
        const QString vkt = QString(k.mountAt) == "Libs" ? env.path("Libs/Lib.vkt") : env.path("Lib.vkt");
        // Two tracks in Quarantaine wait for their relocation into A/.
        writeFile(env.path("in/new.mp3"), song("Abba", "New"));
        writeFile(env.path("Music/Quarantaine/one.mp3"), song("Abba", "One"));
        writeFile(env.path("Music/Quarantaine/two.mp3"), song("Abba", "Two"));
        writeFile(env.path("Music/A/x.mp3"), song("Abba", "X"));
        const CliRun made = runCli({"--dialog", env.path("Music"), "new", vkt});
        ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
        const QStringList rowsBefore = runCli({"open", vkt}).out;
        ASSERT_EQ(rowsBefore.size(), 3);

        fs.leaveFree(QString(k.mountAt).contains("ZEVSonorit") || QString(k.mountAt) == "Libs" ? 0 : 2048);
        const auto before = contentsUnder(env.root());
        const CliRun r = runCli(k.command(env));
        EXPECT_NE(r.exitCode, -1);
        const auto after = contentsUnder(env.root());

        // Each file is its old self or a complete new one: no file shrank to
        // a part of itself, and no track is gone.
        for (auto it = after.begin(); it != after.end(); ++it) {
            const QByteArray old = before.value(it.key());
            if (!old.isEmpty() && it.value() != old) {
                EXPECT_FALSE(old.startsWith(it.value())) << it.key().toStdString() << " was cut short";
            }
        }
        const QStringList all = filesUnder(env.root());
        EXPECT_TRUE(all.filter(".sonorit-partial-").isEmpty() && all.filter("/Temp.mp3").isEmpty()) << all.join(' ').toStdString();
        EXPECT_GE(filesUnder(env.path("Music"), {"*.mp3"}).size(), 3);  // no track is gone

        // The library still opens, and after a refresh every row's file exists.
        fs.leaveFree(1 << 20);
        QFile::remove(env.path(QString(k.mountAt) + "/.filler"));
        const CliRun refreshed = runCli({"refresh", vkt});
        EXPECT_EQ(refreshed.exitCode, 0) << refreshed.err.toStdString();
        for (const QString& path : rowPaths(refreshed))
            EXPECT_TRUE(QFileInfo(path).isFile()) << path.toStdString();
        EXPECT_GE(refreshed.out.size(), 3);
    }
}
