// Backup over real trees of LAME files: the first mirror, the incremental
// second with its clean-up and the location check, tracks whose files went
// missing, a full backup medium and a FAT medium.
#include <gtest/gtest.h>

#include "backup_fixture.h"
#include "tests/support/fat_mount.h"
#include "tests/support/small_fs.h"

#include <sys/mount.h>

using namespace sonorit;
using namespace sonorit::test;

TEST(Backup, FirstRunMirrorsTheTreeAndTheSecondCopiesOnlyWhatChanged)
{
    BackupFixture f;
    const QString one = f.track("A/Abba/Gold/01.mp3", "One");
    const QString two = f.track("A/Abba/Gold/02.mp3", "Two");
    const QString gone = f.track("B/Band/Live/gone.mp3", "Gone");
    const QString kept = f.track("B/Band/Live/kept.mp3", "Kept");
    f.track("loose.mp3", "Loose");
    ASSERT_TRUE(Add_MP3(f.ctx, f.source("elsewhere/x.mp3", tags("Cream", "Wheels", "2", "White Room"))));
    writeFile(f.main + "A/Abba/Gold/Folder.jpg", "cover one");
    writeFile(f.main + "A/Abba/Gold/notes.txt", "not for the backup");

    // No to the check, or a cancelled folder choice: nothing happens.
    f.ui.answers = {Answer::No};
    EXPECT_TRUE(mnu_Library_Backup(f.ctx));
    f.ui.answers = {Answer::Yes, Answer::Ok};
    EXPECT_TRUE(mnu_Library_Backup(f.ctx));
    EXPECT_EQ(f.ui.titles(), (QStringList{"Location check!", "Location check!", "Info"}));
    EXPECT_FALSE(QFileInfo::exists(f.bak));
    EXPECT_EQ(f.general("BAK_FOLDER"), "<none>");

    // The first run moves the track from outside into the Main Folder.
    f.ui.messages.clear();
    ASSERT_TRUE(f.firstBackup());
    EXPECT_EQ(f.ui.titles(), (QStringList{"Location check!", "Info", "Backup report"}));
    EXPECT_EQ(f.ui.messages[0].text,
              "Before making this Backup all tracks will be checked to see if they are located inside the current "
              "Library Folder. Any track located outside this Library Folder will be relocated!\n\r"
              "Proceed with Backup procedure?");
    EXPECT_EQ(f.ui.messages[0].icon, Icon::Warning);
    EXPECT_EQ(f.ui.messages[1].text, "Please select backup media and main folder on next step.");
    EXPECT_EQ(f.report(), "6 tracks in Library.\n\r6 tracks added to backup folder.\n\r0 tracks updated.");
    EXPECT_EQ(f.general("BAK_FOLDER"), f.bak);
    EXPECT_EQ(f.app.options.backupFolderText, f.bak);
    for (const QString& label :
         {QStringLiteral("label17:Checking track locations in current Library"), QStringLiteral("label18:Relocating x.mp3"),
          "label17:Backup tracks to " + f.bak, "label18:Saving Track loose.mp3 to " + f.bak.chopped(1),
          "label18:Saving Folder.jpg to " + f.bak + "A/Abba/Gold"})
        EXPECT_TRUE(f.ui.events.contains(label)) << label.toStdString();
    EXPECT_FALSE(QFileInfo::exists(f.env.path("Src/elsewhere/x.mp3")));
    EXPECT_TRUE(f.recordsMatchList());
    f.expectMirrored();
    EXPECT_EQ(filesBelow(f.bak).keys(), (QStringList{"A/Abba/Gold/01.mp3", "A/Abba/Gold/02.mp3",
                                                     "A/Abba/Gold/Folder.jpg", "B/Band/Live/gone.mp3",
                                                     "B/Band/Live/kept.mp3", "C/Cream/Wheels/x.mp3", "loose.mp3"}));
    EXPECT_FALSE(f.ui.locked);
    EXPECT_FALSE(f.ui.shielded);

    // The changes between the runs: one track new, one newer, one gone from
    // the library, a copy newer than its track, covers new and newer, and
    // in the backup a copy no track accounts for, a folder of such, and what
    // a killed copy left.
    const QString three = f.track("A/Abba/Gold/03.mp3", "Three");
    writeTaggedMp3(one, tags("Abba", "Gold", "1", "One, edited"), {0.4});
    setMtime(one, mtimeNs(one) + kHourNs);
    QFile::remove(gone);
    f.ui.answers = {Answer::No};
    mnu_Library_Refresh(f.ctx);
    writeFile(f.bak + "B/Band/Live/kept.mp3", "a copy newer than its track");
    setMtime(f.bak + "B/Band/Live/kept.mp3", mtimeNs(kept) + kHourNs);
    writeFile(f.main + "A/Abba/Gold/Folder.jpg", "cover two");
    setMtime(f.main + "A/Abba/Gold/Folder.jpg", mtimeNs(f.bak + "A/Abba/Gold/Folder.jpg") + 5000000000LL);
    writeFile(f.main + "A/Abba/Gold/AlbumArtSmall.jpg", "small");
    writeTaggedMp3(f.bak + "A/Abba/Gold/extra.mp3", tags("X", "Y", "1", "Extra"), {0.3});
    writeTaggedMp3(f.bak + "Old/Deeper/old.mp3", tags("X", "Y", "1", "Old"), {0.3});
    writeFile(f.bak + "Old/Deeper/Folder.jpg", "old cover");
    writeFile(f.bak + "Old/Deeper/desktop.ini", "[.ShellClassInfo]");
    writeTaggedMp3(f.bak + "Kept/mine.mp3", tags("X", "Y", "1", "Mine"), {0.3});
    writeFile(f.bak + "Kept/letter.txt", "the user's own");
    writeFile(f.bak + "A/Abba/Gold/.02.mp3.sonorit-partial-AbCdEf", "half a copy");
    // Copies under another spelling, which this medium tells apart.
    QDir().mkpath(f.bak + "a/abba/gold");
    QFile::copy(one, f.bak + "a/abba/gold/01.mp3");
    QFile::copy(two, f.bak + "B/Band/Live/02.MP3");
    const auto libraryBefore = filesBelow(f.main);

    ASSERT_TRUE(f.nextBackup());
    EXPECT_EQ(f.ui.titles(), (QStringList{"Location check!", "Select Backup folder", "Backup report"}));
    EXPECT_EQ(f.ui.messages[1].text, "The current Backup folder is set to:\n\r" + f.bak + "\n\rUse this folder?");
    EXPECT_EQ(f.report(), "6 tracks in Library.\n\r1 tracks added to backup folder.\n\r1 tracks updated.");
    for (const QString& label : {QStringLiteral("label18:Refreshing Track 01.mp3"),
                                 QStringLiteral("label18:Refreshing Folder.jpg"),
                                 QStringLiteral("label17:Removing non-existing Library tracks from Backup"),
                                 "label18:Removing extra.mp3 from " + f.bak + "A/Abba/Gold",
                                 "label18:Confirming " + f.bak + "A/Abba/Gold/01.mp3"})
        EXPECT_TRUE(f.ui.events.contains(label)) << label.toStdString();

    EXPECT_EQ(filesBelow(f.main), libraryBefore);  // the library is only read
    f.expectMirrored({"B/Band/Live/kept.mp3"});
    EXPECT_EQ(readFile(f.bak + "B/Band/Live/kept.mp3"), "a copy newer than its track");
    EXPECT_EQ(readFile(f.bak + "A/Abba/Gold/Folder.jpg"), "cover two");
    EXPECT_EQ(stateOf(f.bak + "A/Abba/Gold/AlbumArtSmall.jpg"), stateOf(f.main + "A/Abba/Gold/AlbumArtSmall.jpg"));
    EXPECT_EQ(filesBelow(f.bak).keys(),
              (QStringList{"A/Abba/Gold/01.mp3", "A/Abba/Gold/02.mp3", "A/Abba/Gold/03.mp3",
                           "A/Abba/Gold/AlbumArtSmall.jpg", "A/Abba/Gold/Folder.jpg", "B/Band/Live/kept.mp3",
                           "C/Cream/Wheels/x.mp3", "Kept/letter.txt", "loose.mp3"}));
    EXPECT_FALSE(QFileInfo::exists(f.bak + "Old"));  // emptied, the folder above too
    EXPECT_TRUE(QFileInfo(f.bak + "Kept").isDir());

    // A third run finds nothing to do.
    const auto backupBefore = filesBelow(f.bak);
    ASSERT_TRUE(f.nextBackup());
    EXPECT_EQ(f.report(), "6 tracks in Library.\n\r0 tracks added to backup folder.\n\r0 tracks updated.");
    EXPECT_EQ(filesBelow(f.bak), backupBefore);
}

TEST(Backup, ATrackWhoseFileIsGoneIsRestoredOrItsCopyRemovedAsAnswered)
{
    const struct {
        Answer restore;
        bool fileBack, copyKept;
        QStringList titles;
    } rows[] = {
        {Answer::Yes, true, true, {"Location check!", "Select Backup folder", "Restore missing track?", "Backup report"}},
        {Answer::No, false, false,
         {"Location check!", "Select Backup folder", "Restore missing track?", "Backup report",
          "Library not up-to-date", "Refresh Report"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.restore == Answer::Yes ? "yes" : "no");
        BackupFixture f;
        const QString lost = f.track("A/Abba/Gold/lost.mp3", "Lost");
        f.track("A/Abba/Gold/stays.mp3", "Stays");
        ASSERT_TRUE(f.firstBackup());
        const FileState copy = stateOf(f.bak + "A/Abba/Gold/lost.mp3");
        QFile::remove(lost);

        // No: the copy goes, and the refresh asked for drops the row.
        ASSERT_TRUE(f.nextBackup({row.restore, Answer::Ok, Answer::Yes}));
        EXPECT_EQ(f.ui.titles(), row.titles);
        EXPECT_EQ(f.ui.messages[2].text,
                  "The current library refers to track lost.mp3.\n\rThis track don't exist any longer, however...\n\r"
                  "the track is still available in the current backup.\n\rDo you want to restore that track?");
        EXPECT_EQ(QFileInfo::exists(lost), row.fileBack);
        EXPECT_EQ(QFileInfo::exists(f.bak + "A/Abba/Gold/lost.mp3"), row.copyKept);
        if (row.fileBack) {
            EXPECT_EQ(stateOf(lost), copy);
            EXPECT_TRUE(f.ui.events.contains("label18:Restoring Track lost.mp3 to " + f.main + "A/Abba/Gold"));
            EXPECT_EQ(f.lib.MP3_List.count(), 2);
        } else {
            EXPECT_EQ(f.ui.messages[4].text,
                      "One or more tracks in the current library don't exist anymore!\n\r"
                      "Do you want to refresh the current library?");
            EXPECT_TRUE(f.ui.events.contains("label18:Removing Track lost.mp3 from " + f.bak + "A/Abba/Gold"));
            EXPECT_EQ(f.lib.MP3_List.count(), 1);
        }
    }
}

TEST(Backup, AFailedTrackCopyStopsTheRunNamingFileAndReasonAndLosesNothing)
{
    BackupFixture f;
    for (int i = 1; i <= 4; ++i)
        f.track(QString("A/%1.mp3").arg(i), QString("T%1").arg(i), 2);
    const QString three = f.pathOf(2);
    const QByteArray threeBytes = readFile(three);
    const auto stoppedAtThree = [&](const QString& target, const QString& reason) {
        return "The backup has stopped: this track could not be copied.\n\r" + three + "\n\rto " + target
               + "A/3.mp3\n\rReason: " + reason;
    };
    const auto expectStopAtThree = [&](const QString& target, const QString& reason) {
        ASSERT_EQ(f.ui.titles().last(), "Backup failure");
        EXPECT_EQ(f.ui.messages.back().text, stoppedAtThree(target, reason));
        EXPECT_EQ(f.ui.messages.back().icon, Icon::Critical);
        EXPECT_FALSE(f.ui.locked);
        EXPECT_FALSE(f.ui.shielded);
        EXPECT_EQ(filesBelow(target).keys(), (QStringList{"A/1.mp3", "A/2.mp3"}));  // whole ones only, nothing hidden
    };

    // What stands under the track's name is a folder.
    QFile::remove(three);
    QDir().mkpath(three);
    EXPECT_FALSE(f.firstBackup());
    QFile folder(three);
    EXPECT_FALSE(folder.open(QIODevice::ReadOnly));
    expectStopAtThree(f.bak, folder.errorString());
    QDir().rmdir(three);
    writeFile(three, threeBytes);

    // A medium with room for two copies only.
    const QString small = f.env.path("Small/");
    SmallFileSystem fs(small, 512);
    if (!fs.mounted())
        GTEST_SKIP() << fs.reason().toStdString();
    fs.leaveFree(threeBytes.size() * 5 / 2);
    const auto library = filesBelow(f.main);
    f.ui.answers = {Answer::Yes, Answer::No};
    f.ui.dialogResults = {small};
    EXPECT_FALSE(mnu_Library_Backup(f.ctx));
    expectStopAtThree(small, "No space left on device");
    EXPECT_EQ(filesBelow(f.main), library);

    // With room again the next run completes the mirror.
    QFile::remove(small + ".filler");
    f.bak = small;
    ASSERT_TRUE(f.nextBackup());
    EXPECT_EQ(f.report(), "4 tracks in Library.\n\r2 tracks added to backup folder.\n\r0 tracks updated.");
    f.expectMirrored();

    // A medium that became read-only keeps what it holds.
    ASSERT_EQ(::mount(nullptr, QFile::encodeName(small).constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    writeTaggedMp3(three, tags("Abba", "Gold", "1", "T3, edited"), {2});
    setMtime(three, mtimeNs(three) + kHourNs);
    const auto copies = filesBelow(small);
    EXPECT_FALSE(f.nextBackup());
    EXPECT_EQ(f.ui.messages.back().text, stoppedAtThree(small, "Read-only file system"));
    EXPECT_EQ(filesBelow(small), copies);
}

TEST(Backup, OnAFatMediumNamesMatchWithoutCaseAndRoundedTimesCountAsEqual)
{
    BackupFixture f;
    FatMount fat(f.env.path("fat.img"), f.env.path("Bak"));
    if (!fat.mounted())
        GTEST_SKIP() << fat.reason().toStdString();
    const QString one = f.track("A/Abba/Gold/01.mp3", "One");
    const QString two = f.track("A/Abba/Gold/02.mp3", "Two");
    setMtime(two, mtimeNs(two) - kHourNs);
    setMtime(one, mtimeNs(one) / kSecondNs * kSecondNs + 1700000000);  // an odd second and a fraction
    // A copy of 01 made before, spelt in lower case.
    QDir().mkpath(f.bak + "a/abba/gold");
    writeFile(f.bak + "a/abba/gold/01.mp3", readFile(one));
    setMtime(f.bak + "a/abba/gold/01.mp3", mtimeNs(one));

    ASSERT_TRUE(f.firstBackup());
    EXPECT_EQ(f.report(), "2 tracks in Library.\n\r1 tracks added to backup folder.\n\r0 tracks updated.");
    EXPECT_EQ(readFile(f.bak + "A/Abba/Gold/01.mp3"), readFile(one));
    EXPECT_EQ(readFile(f.bak + "A/Abba/Gold/02.mp3"), readFile(f.pathOf(1)));
    EXPECT_EQ(mtimeNs(f.bak + "A/Abba/Gold/02.mp3") / 2000000000, mtimeNs(two) / 2000000000);
    EXPECT_EQ(QDir(f.bak + "a/abba/gold").entryList(QDir::Files), (QStringList{"01.mp3", "02.mp3"}));

    ASSERT_TRUE(f.nextBackup());
    EXPECT_EQ(f.report(), "2 tracks in Library.\n\r0 tracks added to backup folder.\n\r0 tracks updated.");
    EXPECT_FALSE(f.ui.events.filter("label18:Removing").size());
}
