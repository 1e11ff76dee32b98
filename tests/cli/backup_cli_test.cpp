// "sonorit-cli backup" and "restore" as a separate program: the verbs with
// their dialogs, answers, rows and exit codes, and a backup killed with
// SIGKILL at many points, after which every track is whole in at least one
// place, the library opens, and the next backup completes the mirror.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <fcntl.h>
#include <sys/stat.h>

#include "cli_run.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

QByteArray song(int i, const char* version = "")
{
    return taggedMp3({QStringLiteral("Artist %1").arg(i % 7), QStringLiteral("Album %1").arg(i % 10), "1",
                      QStringLiteral("Song %1%2").arg(i).arg(version), {}, {}},
                     {2});
}

// A library of `count` tracks in ten folders below Main, made by "new".
QString makeLibrary(const TempEnv& env, int count)
{
    for (int i = 0; i < count; ++i)
        writeFile(env.path(QStringLiteral("Main/F%1/t%2.mp3").arg(i % 10).arg(i, 3, 10, QLatin1Char('0'))), song(i));
    const CliRun made = runCli({"--dialog", env.path("Main"), "new", env.path("Lib.vkt")});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    return env.path("Lib.vkt");
}

}  // namespace

TEST(CliBackup, BackupAndRestoreTakeFoldersAndAnswersAndPrintTheRows)
{
    TempEnv env;
    const QString vkt = makeLibrary(env, 3), bak = env.path("Bak");
    QDir().mkpath(bak);
    const CliRun backup = runCli({"--answers", "yes,ok", "--dialog", "Bak", "backup", vkt}, env.root());
    ASSERT_EQ(backup.exitCode, 0) << backup.err.toStdString();
    EXPECT_EQ(titlesOf(backup), (QStringList{"Location check!", "Info", "Backup report"}));
    EXPECT_EQ(backup.json.back()["text"].toString(),
              "3 tracks in Library.\n\r3 tracks added to backup folder.\n\r0 tracks updated.");
    const CliRun opened = runCli({"open", vkt});
    EXPECT_EQ(backup.out, opened.out);

    QFile::remove(env.path("Main/F1/t001.mp3"));
    const CliRun restore = runCli({"--answers", "yes", "restore", vkt});
    ASSERT_EQ(restore.exitCode, 0) << restore.err.toStdString();
    EXPECT_EQ(titlesOf(restore), (QStringList{"Confirm Backup folder", "Refresh Report"}));
    EXPECT_EQ(restore.out, opened.out);

    // Exit 1 after a failure the user was told of; 2 for a wrong call.
    const struct {
        QStringList args;
        int exitCode;
        QString lastTitle;
    } rows[] = {
        {{"--answers", "yes,no", "--dialog", env.path("Main/F1"), "backup", vkt}, 1, "Backup folder refused"},
        {{"--answers", "yes,no", "--dialog", env.path("Bak/F1"), "backup", vkt}, 0, "Backup report"},
        {{"backup"}, 2, ""},
        {{"restore", vkt, vkt}, 2, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.args.join(' ').toStdString());
        const CliRun r = runCli(row.args);
        EXPECT_EQ(r.exitCode, row.exitCode);
        EXPECT_EQ(titlesOf(r).value(int(r.json.size()) - 1), row.lastTitle);
        EXPECT_EQ(r.out.isEmpty(), row.exitCode != 0);
    }
    TempEnv bare;
    const CliRun none = runCli({"restore", makeLibrary(bare, 1)});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(titlesOf(none), QStringList{"Info"});
}

TEST(CliBackup, AKilledBackupLeavesEveryTrackWholeInAtLeastOnePlace)
{
    constexpr int kTracks = 300;
    TempEnv env;
    const QString vkt = makeLibrary(env, kTracks), main = env.path("Main"), bak = env.path("Bak");
    QDir().mkpath(bak);
    ASSERT_EQ(runCli({"--answers", "yes,ok", "--dialog", bak, "backup", vkt}).exitCode, 0);

    // The seed of every round: a third of the copies missing, a third of the
    // tracks changed since the backup, and copies no track accounts for.
    const QString seed = env.path("Seed");
    ASSERT_EQ(QProcess::execute("cp", {"-a", bak, seed}), 0);
    QMap<QString, QByteArray> old;
    for (int i = 0; i < kTracks; ++i) {
        const QString rel = QStringLiteral("F%1/t%2.mp3").arg(i % 10).arg(i, 3, 10, QLatin1Char('0'));
        old[rel] = readFile(seed + '/' + rel);
        if (i % 2 == 0) {
            QFile::remove(seed + '/' + rel);
        } else if (i % 4 == 1) {
            writeFile(main + '/' + rel, song(i, " (edited)"));
            const struct timespec later[2] = {{0, UTIME_OMIT}, {time(nullptr) + 3600, 0}};
            ::utimensat(AT_FDCWD, QFile::encodeName(main + '/' + rel).constData(), later, 0);
        }
    }
    const QByteArray stray = song(1000);
    for (int i = 0; i < 240; ++i)
        writeFile(seed + QStringLiteral("/Old%1/x%2.mp3").arg(i % 3).arg(i), stray);
    const auto library = filesBelow(main);
    const int seedFiles = int(filesUnder(seed).size()), full = seedFiles + kTracks / 2;

    // Kills while copies are added (the count grows), while they replace
    // older ones, and while the clean-up removes what no track accounts for
    // (the count falls below the seed's).
    const int killAt[] = {seedFiles + 5, seedFiles + 60, seedFiles + 130, full - 10, full - 150};
    int caught = 0;
    for (const int at : killAt) {
        SCOPED_TRACE("killed at " + std::to_string(at) + " files");
        QDir(bak).removeRecursively();
        ASSERT_EQ(QProcess::execute("cp", {"-a", seed, bak}), 0);
        const bool growing = at > seedFiles;
        bool copied = false;  // the copy step is through
        caught += killWhen({"--answers", "yes,yes", "backup", vkt}, [&] {
            const int n = int(filesUnder(bak).size());
            copied = copied || n >= full;
            return (growing && n >= at) || (!growing && copied && n <= at);
        });

        EXPECT_EQ(filesBelow(main), library);  // the backup only reads the library
        int partials = 0;
        const auto copies = filesBelow(bak);
        for (auto it = copies.begin(); it != copies.end(); ++it) {
            if (QFileInfo(it.key()).fileName().startsWith('.')) {
                ++partials;
                continue;
            }
            if (it.key().startsWith("Old")) {
                EXPECT_EQ(it->bytes, stray);  // not yet cleaned up
                continue;
            }
            const QByteArray& bytes = it->bytes;
            EXPECT_TRUE(bytes == library.value(it.key()).bytes || bytes == old.value(it.key())) << it.key().toStdString();
        }
        EXPECT_LE(partials, 1);
        const CliRun opened = runCli({"open", vkt});
        EXPECT_EQ(opened.exitCode, 0);
        EXPECT_EQ(opened.out.size(), kTracks);
    }
    EXPECT_GE(caught, 4) << "the backups ended before they could be killed";

    // The next backup puts everything right, the leftover included.
    const CliRun done = runCli({"--answers", "yes,yes", "backup", vkt});
    ASSERT_EQ(done.exitCode, 0) << done.err.toStdString();
    EXPECT_EQ(filesBelow(bak), library);
}
