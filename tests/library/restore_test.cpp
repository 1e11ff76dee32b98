// Restore over real trees: what the library folder lost comes back with the
// backup's dates, a copy newer than its track replaces it whole, a track
// newer than its copy stays, the refresh follows; a second run changes
// nothing; and the refusals before anything changes.
#include <gtest/gtest.h>

#include "backup_fixture.h"
#include "tests/support/small_fs.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(Restore, BringsBackWhatTheLibraryLostAndWhatIsNewerAndASecondRunChangesNothing)
{
    BackupFixture f;
    const QString lost = f.track("A/Abba/Gold/lost.mp3", "Lost");
    const QString older = f.track("A/Abba/Gold/older.mp3", "Older");
    const QString newer = f.track("A/Abba/Gold/newer.mp3", "Newer");
    const QString gone = f.track("B/Band/Gone/gone.mp3", "Gone");
    writeFile(f.main + "A/Abba/Gold/Folder.jpg", "cover");
    ASSERT_TRUE(f.firstBackup());
    const auto backup = filesBelow(f.bak);

    // The folder of "gone" goes whole; "older" was changed to something the
    // backup holds a later copy of; "newer" was changed after the backup.
    QFile::remove(lost);
    QDir(f.main + "B").removeRecursively();
    QFile::remove(f.main + "A/Abba/Gold/Folder.jpg");
    writeFile(older, "damaged by hand");
    setMtime(older, mtimeNs(f.bak + "A/Abba/Gold/older.mp3") - kHourNs);
    writeTaggedMp3(newer, tags("Abba", "Gold", "1", "Newer, edited"), {0.4});
    setMtime(newer, mtimeNs(f.bak + "A/Abba/Gold/newer.mp3") + kHourNs);
    const FileState edited = stateOf(newer);
    // A copy a killed run left, which no walk may take for a track.
    writeFile(f.bak + "A/Abba/Gold/.lost.mp3.sonorit-partial-XyZ123", "half");

    ASSERT_TRUE(f.restore({Answer::Yes}));
    ASSERT_EQ(f.ui.titles(), (QStringList{"Confirm Backup folder", "Refresh Report"}));
    EXPECT_EQ(f.ui.messages[0].text, "The current Backup folder is set to:\n\r" + f.bak + "\n\rProceed restoring?");
    EXPECT_EQ(f.ui.messages[1].text, "0 tracks were removed.\r\n0 tracks were refreshed.\r\n0 tracks were added.");
    for (const QString& label : QStringList{"label17:Checking tracks", "label18:Updating older.mp3", "label18:Restoring " + lost,
                                 "label18:Restoring " + gone, "label17:Analysing Library Tracks"})
        EXPECT_TRUE(f.ui.events.contains(label)) << label.toStdString();
    for (const QString& path : {lost, older, gone}) {
        const QString rel = path.mid(f.main.size());
        EXPECT_EQ(stateOf(path), backup[rel]) << rel.toStdString();
    }
    EXPECT_EQ(stateOf(newer), edited);
    EXPECT_FALSE(QFileInfo::exists(f.main + "A/Abba/Gold/Folder.jpg"));  // covers stay in the backup
    EXPECT_EQ(f.lib.MP3_List.count(), 4);
    EXPECT_FALSE(f.ui.locked);
    EXPECT_FALSE(f.ui.shielded);
    EXPECT_EQ(filesBelow(f.bak), backup);  // the partial copy went, nothing else changed

    const auto library = filesBelow(f.main);
    ASSERT_TRUE(f.restore({Answer::Yes}));
    EXPECT_EQ(filesBelow(f.main), library);
    EXPECT_TRUE(f.ui.events.filter("label18:Updating").isEmpty());
    EXPECT_TRUE(f.ui.events.filter("label18:Restoring").isEmpty());
}

TEST(Restore, RefusesBeforeAnythingChanges)
{
    const struct {
        const char* name;
        QString backup;  // relative to the home; "-" for none
        Answer answer;
        QStringList titles;
        QString text;  // of the last message, "%1" for the backup folder; empty: not looked at
        bool result;
    } rows[] = {
        {"no backup folder", "-", Answer::Yes, {"Info"},
         "There's no backup available for the current loaded library.", false},
        {"the user says no", "Bak/", Answer::No, {"Confirm Backup folder"}, "", true},
        {"an empty backup", "Bak/", Answer::Yes, {"Confirm Backup folder", "Restore failed"},
         "The backup could not be found or seems to be empty!", false},
        {"the library folder itself", "Main/", Answer::Yes, {"Confirm Backup folder", "Backup folder refused"}, "",
         false},
        {"the folder holding the library's", "", Answer::Yes, {"Confirm Backup folder", "Backup folder refused"},
         "The Backup folder can not be the Library folder, lie inside it or hold it:\n\r%1", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        BackupFixture f;
        f.track("A/Abba/Gold/01.mp3", "One");
        writeFile(f.bak + "A/notes.txt", "no mp3 here");
        if (row.backup != "-")
            f.app.Backup_Folder = f.env.path(row.backup);
        f.lib.MP3_List.select(0);
        const auto library = filesBelow(f.main);
        const QByteArray records = f.trackfile();
        EXPECT_EQ(f.restore({row.answer}), row.result);
        EXPECT_EQ(f.ui.titles(), row.titles);
        if (!row.text.isEmpty()) {
            EXPECT_EQ(f.ui.messages.back().text, QString(row.text).replace("%1", f.app.Backup_Folder));
        }
        if (row.titles.size() > 1) {
            EXPECT_EQ(f.ui.messages.back().icon, Icon::Warning);
        }
        EXPECT_EQ(filesBelow(f.main), library);
        EXPECT_EQ(f.trackfile(), records);
        EXPECT_FALSE(f.ui.locked);
        EXPECT_EQ(f.lib.MP3_List.selected(), 0);
    }
}

TEST(Restore, ALibraryThatLostEverythingGetsBackWhatCanBeCopiedUnderItsOwnMainFolder)
{
    // The backup was made for the same tree under another Main Folder: only
    // the part below the folder counts.
    BackupFixture f;
    f.app.Backup_Folder = f.bak;
    writeTaggedMp3(f.bak + "C/Cream/Wheels/x.mp3", tags("Cream", "Wheels", "2", "White Room"), {0.3});
    writeTaggedMp3(f.bak + "top.mp3", tags("Cream", "Wheels", "3", "Top"), {0.3});
    writeFile(f.bak + "C/Cream/Wheels/not-audio.mp3", "text");
    writeTaggedMp3(f.bak + "A/first.mp3", tags("A", "B", "1", "First"), {0.3});
    writeFile(f.main + "A", "a file where the folder would go");

    ASSERT_TRUE(f.restore({Answer::Yes, Answer::Ok, Answer::No}));
    ASSERT_EQ(f.ui.titles(), (QStringList{"Confirm Backup folder", "File error", "Refresh Report"}));
    EXPECT_EQ(f.ui.messages[1].text, "The following track can not be restored: \n\rfirst.mp3\n\r"
                                     "The most common cause is that the path/filename is to long.");
    EXPECT_TRUE(f.ui.messages[2].text.startsWith("0 tracks were removed.\r\n0 tracks were refreshed.\r\n"
                                                 "2 tracks were added."));
    EXPECT_EQ(readFile(f.main + "A"), "a file where the folder would go");
    EXPECT_EQ(f.column(ColFilename), (QStringList{"top.mp3", "x.mp3"}));
    EXPECT_EQ(stateOf(f.main + "C/Cream/Wheels/x.mp3"), stateOf(f.bak + "C/Cream/Wheels/x.mp3"));
    EXPECT_EQ(readFile(f.main + "top.mp3"), readFile(f.bak + "top.mp3"));
    EXPECT_FALSE(QFileInfo::exists(f.main + "C/Cream/Wheels/not-audio.mp3"));
}

TEST(Restore, AnUpdateThatFailsLeavesTheTrackAsItWasAndStops)
{
    BackupFixture f;
    SmallFileSystem fs(f.main, 512);
    if (!fs.mounted())
        GTEST_SKIP() << fs.reason().toStdString();
    const QString one = f.track("A/1.mp3", "One", 2);
    const QString two = f.track("A/2.mp3", "Two", 2);
    ASSERT_TRUE(f.firstBackup());
    for (const QString& path : {one, two}) {
        const QString copy = f.bak + path.mid(f.main.size());
        writeTaggedMp3(copy, tags("Abba", "Gold", "1", "From the backup"), {2});
        setMtime(copy, mtimeNs(path) + kHourNs);
    }
    fs.leaveFree(4096);
    const auto library = filesBelow(f.main);

    EXPECT_FALSE(f.restore({Answer::Yes}));
    ASSERT_EQ(f.ui.titles(), (QStringList{"Confirm Backup folder", "Restore failure"}));
    EXPECT_EQ(f.ui.messages[1].text, "The restore has stopped: this track could not be updated.\n\r" + one
                                         + "\n\rfrom " + f.bak + "A/1.mp3\n\rReason: No space left on device");
    EXPECT_EQ(filesBelow(f.main), library);  // no partial copy either
    EXPECT_FALSE(f.ui.locked);
    EXPECT_FALSE(f.ui.shielded);
}
