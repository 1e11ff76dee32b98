// "sonorit-cli scan-tree" killed with SIGKILL in the middle of an import of a
// few hundred tracks: the sources stay as they were, every file in the
// library is whole and in one of its two possible places, and the library
// opens and refreshes into a list that matches the disk exactly.
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QMap>
#include <QSet>

#include "cli_run.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

constexpr int kTracks = 400;

struct Source {
    QString path;
    QByteArray bytes;
    QString ruleFolder;  // under the Main folder; "Quarantaine" when the tags do not say enough
};

// One LAME file under many names, each with tags of its own: 26 artists by
// their first letter, every 13th a various-artists track, every 10th without
// a tag, every 17th without an album.
QMap<QString, Source> makeSources(const TempEnv& env)
{
    const QByteArray audio = makeMp3({1});
    QMap<QString, Source> sources;
    for (int i = 0; i < kTracks; ++i) {
        const QString name = QStringLiteral("s%1.mp3").arg(i, 3, 10, QLatin1Char('0'));
        const QString artist = QStringLiteral("%1 Band %2").arg(QChar('A' + i % 26)).arg(i % 3);
        const QString album = QStringLiteral("Album %1").arg(i % 4);
        const bool various = i % 13 == 0, untagged = i % 10 == 0, noAlbum = i % 17 == 0;
        QByteArray frames = textFrame("TPE1", artist.toLatin1()) + textFrame("TIT2", name.toLatin1())
                            + textFrame("TRCK", QByteArray::number(i % 20 + 1));
        if (!noAlbum)
            frames += textFrame("TALB", album.toLatin1());
        if (various)
            frames += textFrame("TPE2", "Various Artists");
        Source s;
        s.path = env.path(QStringLiteral("Src/d%1/%2").arg(i % 9).arg(name));
        s.bytes = untagged ? audio : tag(frames + QByteArray(i % 50, '\0')) + audio;
        s.ruleFolder = untagged || noAlbum ? QStringLiteral("Quarantaine")
                       : various           ? QStringLiteral("Various Artists/") + album
                                           : QString(artist[0]) + '/' + artist + '/' + album;
        writeFile(s.path, s.bytes);
        sources.insert(name, s);
    }
    return sources;
}

}  // namespace

TEST(CliScanKill, AKilledImportLeavesWholeFilesAndARecoverableLibrary)
{
    // An import takes a millisecond or two; the delays spread the kills over
    // its steps: copy, record, move, record rewritten.
    for (int round = 0; round < 5; ++round) {
        const int records = 40 + 60 * round, delayUs = 450 * round;
        SCOPED_TRACE("killed " + std::to_string(delayUs) + " us after " + std::to_string(records) + " records");
        TempEnv env;
        const QString main = env.path("Main"), vkt = env.path("Lib.vkt");
        QDir().mkpath(main);
        ASSERT_EQ(runCli({"--dialog", main, "new", vkt}).exitCode, 0);
        const QMap<QString, Source> sources = makeSources(env);
        const QString trackfile = iniValue(vkt, "ALBUMLIB_NAME");
        ASSERT_TRUE(killWhen({"scan-tree", vkt, env.path("Src")},
                             [&] { return readFile(trackfile).count("TRCK") >= records; }, delayUs))
            << "the import was not caught in the middle";

        for (const Source& s : sources)
            ASSERT_EQ(readFile(s.path), s.bytes) << s.path.toStdString();

        // Each file is whole, and either waits in Quarantaine or has reached
        // its folder; none is in two places. At most the copy under way is
        // left as a temporary file beside its target.
        QStringList inLibrary, strays;
        QSet<QString> names;
        QDirIterator it(main, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString name = it.fileName(), folder = QDir(main).relativeFilePath(it.fileInfo().absolutePath());
            if (!name.endsWith(".mp3")) {
                strays << path;
                continue;
            }
            inLibrary << path;
            ASSERT_TRUE(sources.contains(name)) << path.toStdString();
            const Source& s = sources[name];
            EXPECT_TRUE(folder == "Quarantaine" || folder == s.ruleFolder) << path.toStdString();
            EXPECT_EQ(readFile(path), s.bytes) << path.toStdString();
            EXPECT_FALSE(names.contains(name)) << path.toStdString();
            names.insert(name);
        }
        EXPECT_LE(strays.size(), 1) << strays.join(' ').toStdString();
        EXPECT_GE(inLibrary.size(), records);
        EXPECT_LT(inLibrary.size(), kTracks);

        // The library opens; its rows are tracks of the import, and only the
        // one under way when the kill came may point at its former place.
        const CliRun opened = runCli({"--answer", "yes", "open", vkt});
        ASSERT_EQ(opened.exitCode, 0) << opened.err.toStdString();
        const QStringList openedPaths = rowPaths(opened);
        EXPECT_EQ(QSet<QString>(openedPaths.begin(), openedPaths.end()).size(), openedPaths.size());
        int astray = 0;
        for (const QString& path : openedPaths) {
            EXPECT_TRUE(sources.contains(QFileInfo(path).fileName())) << path.toStdString();
            astray += QFileInfo::exists(path) ? 0 : 1;
        }
        EXPECT_LE(astray, 1);

        // Refresh makes the list and the disk agree exactly.
        const CliRun refreshed = runCli({"--answer", "yes", "refresh", vkt});
        ASSERT_EQ(refreshed.exitCode, 0) << refreshed.err.toStdString();
        QStringList listed = rowPaths(refreshed);
        listed.sort();
        inLibrary.sort();
        EXPECT_EQ(listed, inLibrary);
        QStringList reopened = rowPaths(runCli({"open", vkt}));
        reopened.sort();
        EXPECT_EQ(reopened, inLibrary);
    }
}
