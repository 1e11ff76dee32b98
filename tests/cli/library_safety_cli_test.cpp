// The library survives what a careless moment does to it: a kill at any point
// of sort, rename all and relocate all, and a second program writing at the
// same time. Afterwards every track is whole, every row names a file that
// exists and no two rows share a record.
#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>
#include <QFileInfo>
#include <QProcess>
#include <QSet>
#include <QThread>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "cli_run.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

// Tracks in Quarantaine, made once and copied into each test's home.
const QMap<QString, QByteArray>& songs()
{
    static const QMap<QString, QByteArray> made = [] {
        QMap<QString, QByteArray> m;
        for (int i = 1; i <= 24; ++i)
            m[QString("t%1.mp3").arg(i)] = taggedMp3({QString("Artist %1").arg(i % 5), QString("Album %1").arg(i % 3),
                                                      QString::number(i), QString("Song %1").arg(i), {}, {}},
                                                     {0.2});
        return m;
    }();
    return made;
}

QString newLibrary(const TempEnv& env)
{
    for (auto it = songs().begin(); it != songs().end(); ++it)
        writeFile(env.path("Music/Quarantaine/") + it.key(), it.value());
    const CliRun r = runCli({"--dialog", env.path("Music"), "new", env.path("Lib.vkt")});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    return env.path("Lib.vkt");
}

// The library as the next run finds it, checked against the tracks made.
void expectSound(const TempEnv& env, const QString& vkt)
{
    QSet<QByteArray> originals;
    for (const QByteArray& b : songs())
        originals << b;
    const QStringList files = filesUnder(env.path("Music"));
    EXPECT_TRUE(files.filter(".sonorit-partial-").isEmpty()) << files.join(' ').toStdString();
    const QStringList tracks = files.filter(QRegularExpression("\\.mp3$"));
    for (const QString& rel : tracks)
        EXPECT_TRUE(originals.contains(readFile(env.path("Music/") + rel))) << rel.toStdString() << " is not whole";
    EXPECT_EQ(tracks.size(), songs().size());

    const CliRun r = runCli({"refresh", vkt});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.size(), songs().size());
    for (const QString& path : rowPaths(r))
        EXPECT_TRUE(QFileInfo(path).isFile()) << path.toStdString();
    const QStringList ids = rowIds(r);
    EXPECT_EQ(QSet<QString>(ids.begin(), ids.end()).size(), ids.size()) << "two rows share a record";
}

}  // namespace

TEST(CliLibrarySafety, AKillAtAnyMomentLeavesALibraryThatOpensWhole)
{
    const QStringList commands[] = {{"relocate", "all"}, {"rename", "all"}, {"sort"}};
    for (const QStringList& command : commands) {
        for (const int delay : {15, 40, 90, 200}) {
            SCOPED_TRACE((command.join(' ') + QString(" killed after %1 ms").arg(delay)).toStdString());
            TempEnv env;
            const QString vkt = newLibrary(env);
            if (command.first() == "sort")  // a library with free slots, so the sort renumbers
                runCli({"relocate", vkt, "all"});
            killWhen(QStringList{command.first(), vkt} + command.mid(1), [] { return true; }, delay * 1000);
            expectSound(env, vkt);
            // The refresh in there opened the library and took any journal the kill left.
            EXPECT_FALSE(QFileInfo::exists(iniValue(vkt, "ALBUMLIB_NAME") + ".journal"));
        }
    }
}

TEST(CliLibrarySafety, ASecondWriterWaitsThenStopsAndTwoWritersLoseNothing)
{
    TempEnv env;
    const QString vkt = newLibrary(env);
    const QByteArray before = readFile(vkt);
    writeFile(env.path("in/a.mp3"), taggedMp3({"Abba", "Gold", "1", "A", {}, {}}, {0.2}));
    writeFile(env.path("in/b.mp3"), taggedMp3({"Cher", "Hits", "2", "B", {}, {}}, {0.2}));

    // Another program holds the lock: the writer stops and changes nothing;
    // a reader goes on.
    const QString trackfile = iniValue(vkt, "ALBUMLIB_NAME");
    const int fd = ::open(QFile::encodeName(trackfile + ".lock").constData(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(::flock(fd, LOCK_EX), 0);
    const QByteArray tracks = readFile(trackfile);
    const CliRun refused = runCli({"add", vkt, env.path("in/a.mp3")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("The library is in use by another program.")) << refused.err.toStdString();
    EXPECT_EQ(readFile(vkt), before);
    EXPECT_EQ(readFile(trackfile), tracks);
    EXPECT_EQ(runCli({"open", vkt}).out.size(), songs().size());
    ::close(fd);

    // Two writers at once: each waits its turn.
    QProcess a, b;
    a.start(SONORIT_CLI_PATH, {"add", vkt, env.path("in/a.mp3")});
    b.start(SONORIT_CLI_PATH, {"add", vkt, env.path("in/b.mp3")});
    ASSERT_TRUE(a.waitForFinished(30000) && b.waitForFinished(30000));
    EXPECT_EQ(a.exitCode(), 0);
    EXPECT_EQ(b.exitCode(), 0);
    const QStringList ids = rowIds(runCli({"open", vkt}));
    EXPECT_EQ(ids.size(), songs().size() + 2);
    EXPECT_EQ(QSet<QString>(ids.begin(), ids.end()).size(), ids.size());
}
