// Moving a library folder: within one file system and across, with files of
// its own and files the new place holds already, refused places, and a
// target that fills up.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>

#include "library/library_move.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/small_fs.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

// A file dated in the past, so that a copy that does not keep the date shows.
void write(const QString& path, const QByteArray& bytes)
{
    writeFile(path, bytes);
    setMtime(path, QDateTime(QDate(2004, 5, 6), QTime(7, 8, 9)).toSecsSinceEpoch() * kSecondNs);
}

// Four tracks in three folders and one directly in the Main Folder, covers,
// and files that belong to no track.
void fill(WorkFixture& f)
{
    const std::pair<QString, TrackTags> tracks[] = {
        {"A/Abba/Gold/a1.mp3", tags("Abba", "Gold", "1", "One")},
        {"A/Abba/Gold/a2.mp3", tags("Abba", "Gold", "2", "Two")},
        {"C/Cher/Hits/c1.mp3", tags("Cher", "Hits", "1", "Three")},
        {"Quarantaine/q.mp3", tags("", "", "", "")},
        {"top.mp3", tags("Top", "", "1", "Top")},
    };
    for (const auto& [rel, t] : tracks)
        write(f.main + rel, taggedMp3(t, Mp3Recipe{0.2}));
    f.ui.answers = {Answer::No};
    mnu_Library_Refresh(f.ctx);
    ASSERT_EQ(f.lib.MP3_List.count(), 5);
    write(f.main + "A/Abba/Gold/Folder.jpg", "cover");
    write(f.main + "A/Abba/Gold/booklet.pdf", "booklet");
    write(f.main + "A/Abba/Gold/never imported.mp3", taggedMp3(tags("Abba", "Gold", "9", "Nine"), Mp3Recipe{0.2}));
    write(f.main + "C/Cher/Hits/AlbumArtSmall.jpg", "small cover");
    write(f.main + "notes.txt", "notes");
    write(f.main + "Other/song.ogg", "ogg");
    write(f.main + "lists/all.m3u", "#EXTM3U\n");
    f.ui.messages.clear();
    f.ui.events.clear();
}

}  // namespace

TEST(LibraryMove, ASiblingFolderTakesEveryFileAndKeepsWhatItHeld)
{
    WorkFixture f;
    fill(f);
    const QString old = f.main;
    const QString target = f.env.path("Main2");  // begins like the Main Folder, lies beside it
    write(target + "/notes.txt", "theirs");
    write(target + "/A/Abba/Gold/a2.mp3", "someone else's");
    write(target + "/extra.txt", "extra");
    writeFile(target + "/lists/all.m3u", "#EXTM3U\n");  // the same bytes: its source is not needed any more
    const QMap<QString, FileState> before = filesBelow(old), held = filesBelow(target);

    f.ui.dialogResults = {target};
    ASSERT_TRUE(mnu_Library_Move(f.ctx));

    ASSERT_EQ(f.ui.titles(), (QStringList{"Info", "Move report"}));
    EXPECT_EQ(f.ui.messages[0].text, "Please select new location for current library.");
    EXPECT_EQ(f.ui.messages[1].text, "5 tracks in Library.\n\r4 tracks moved to " + target
                                         + "/\n\r\n\r2 files stayed where they were, as the new location holds files "
                                           "of their names:\n\r"
                                         + old + "A/Abba/Gold/a2.mp3\n\r" + old + "notes.txt");
    // What the new place held stays; everything else came along unchanged.
    QMap<QString, FileState> expected = before;
    expected.remove("notes.txt");
    expected.remove("A/Abba/Gold/a2.mp3");
    expected.insert(held);
    EXPECT_EQ(filesBelow(target), expected);
    EXPECT_EQ(filesBelow(old).keys(), (QStringList{"A/Abba/Gold/a2.mp3", "notes.txt"}));
    EXPECT_FALSE(QDir(old + "C").exists());  // emptied folders went

    EXPECT_EQ(f.app.Library_Main_Folder, target + "/");
    EXPECT_EQ(f.general("LIB_FOLDER"), target + "/");
    EXPECT_EQ(f.app.Quarantaine_Folder, target + "/Quarantaine");
    EXPECT_EQ(f.rowPaths(), (QStringList{old + "A/Abba/Gold/a2.mp3", target + "/A/Abba/Gold/a1.mp3",
                                        target + "/C/Cher/Hits/c1.mp3", target + "/Quarantaine/q.mp3",
                                        target + "/top.mp3"}));
    EXPECT_EQ(f.trackfile(), f.listAsTrackfile());  // sorted afterwards
    for (const QString& label : {"label17:Moving current library to " + target + "/",
                                 "label18:Moving Track a1.mp3 to " + target + "/A/Abba/Gold",
                                 "label18:Moving Folder.jpg to " + target + "/A/Abba/Gold",
                                 "label17:Removing non-existing Library tracks from " + target + "/",
                                 "label18:Confirming " + target + "/top.mp3"})
        EXPECT_TRUE(f.ui.events.contains(label)) << label.toStdString();
    EXPECT_FALSE(f.ui.locked);

    const QStringList moved = f.rowPaths();
    ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
    EXPECT_EQ(f.rowPaths(), moved);
    EXPECT_EQ(f.app.Library_Main_Folder, target + "/");
}

TEST(LibraryMove, AFolderInsideTheLibraryIsRefusedAndTheParentAccepted)
{
    WorkFixture f;
    fill(f);
    const QString old = f.main;
    const QMap<QString, FileState> before = filesBelow(old);
    const QByteArray records = f.trackfile();
    for (const QString& inside : {old, old.chopped(1), old + "A", old + "A/Abba/"}) {
        SCOPED_TRACE(inside.toStdString());
        f.ui.messages.clear();
        f.ui.dialogResults = {inside};
        EXPECT_TRUE(mnu_Library_Move(f.ctx));
        ASSERT_EQ(f.ui.titles(), (QStringList{"Info", "Library move aborted"}));
        EXPECT_EQ(f.ui.messages[1].text, "The new location cannot be equal to, or a subfolder of the current location!");
        EXPECT_EQ(f.ui.messages[1].icon, Icon::Critical);
    }
    f.ui.messages.clear();
    EXPECT_TRUE(mnu_Library_Move(f.ctx));  // no folder chosen
    EXPECT_EQ(f.ui.titles(), QStringList{"Info"});
    EXPECT_EQ(filesBelow(old), before);
    EXPECT_EQ(f.trackfile(), records);
    EXPECT_EQ(f.general("LIB_FOLDER"), old);

    const QString parent = f.env.root() + "/";
    const QMap<QString, FileState> around = filesBelow(parent);
    f.ui.dialogResults = {f.env.root()};
    ASSERT_TRUE(mnu_Library_Move(f.ctx));
    EXPECT_FALSE(QDir(old).exists());
    const QMap<QString, FileState> after = filesBelow(parent);
    for (auto it = before.begin(); it != before.end(); ++it)
        EXPECT_TRUE(after.value(it.key()) == it.value()) << it.key().toStdString();
    // The parent's own files (the library file, the data folder) are left as
    // they were, apart from the library's own writes.
    for (auto it = around.begin(); it != around.end(); ++it) {
        if (!it.key().startsWith("Main/") && !it.key().startsWith(".local/") && it.key() != "Music.vkt") {
            EXPECT_TRUE(after.value(it.key()) == it.value()) << it.key().toStdString();
        }
    }
    EXPECT_EQ(f.general("LIB_FOLDER"), parent);
    EXPECT_TRUE(f.everyRowExists());
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_TRUE(QDir(parent + "Quarantaine").exists());
}

TEST(LibraryMove, AcrossFileSystemsFilesAreCopiedWholeThenTheSourceGoes)
{
    WorkFixture f;
    fill(f);
    const QString old = f.main;
    const QString stick = f.env.path("Stick");
    SmallFileSystem fs(stick, 8192);
    if (!fs.mounted())
        GTEST_SKIP() << fs.reason().toStdString();
    const QMap<QString, FileState> before = filesBelow(old);
    f.ui.dialogResults = {stick + "/Music"};
    ASSERT_TRUE(mnu_Library_Move(f.ctx));
    EXPECT_EQ(filesBelow(stick + "/Music"), before);
    EXPECT_FALSE(QDir(old).exists());
    EXPECT_EQ(f.general("LIB_FOLDER"), stick + "/Music/");
    EXPECT_TRUE(f.everyRowExists());
}

TEST(LibraryMove, AFailingMoveAsksAndStoppingLeavesEveryTrackInOnePlace)
{
    WorkFixture f;
    fill(f);
    const QString old = f.main;
    const QMap<QString, FileState> before = filesBelow(old);
    const QString stick = f.env.path("Stick");
    SmallFileSystem fs(stick, 1024);
    if (!fs.mounted())
        GTEST_SKIP() << fs.reason().toStdString();
    // Room for about two tracks.
    fs.leaveFree(2 * ((QFileInfo(old + "top.mp3").size() + 4095) / 4096 * 4096) + 2048);
    f.ui.dialogResults = {stick};
    f.ui.answers = {Answer::Ok, Answer::Yes, Answer::No};  // the Info box; try again once, then stop
    EXPECT_FALSE(mnu_Library_Move(f.ctx));
    ASSERT_EQ(f.ui.titles(), (QStringList{"Info", "Move failure", "Move failure"}));
    EXPECT_TRUE(f.ui.messages[1].text.startsWith("The following file could not be moved:\n\r" + old));
    EXPECT_TRUE(f.ui.messages[1].text.contains("\n\rNo space left on device\n\r"));
    EXPECT_FALSE(f.ui.locked);

    // Each file is whole in exactly one of the two places, the library
    // points at it, and its folder is still the old one.
    const QMap<QString, FileState> left = filesBelow(old), arrived = filesBelow(stick);
    EXPECT_FALSE(arrived.isEmpty());
    for (auto it = before.begin(); it != before.end(); ++it) {
        const bool here = left.contains(it.key()), there = arrived.contains(it.key());
        EXPECT_NE(here, there) << it.key().toStdString();
        EXPECT_TRUE((here ? left : arrived).value(it.key()) == it.value()) << it.key().toStdString();
    }
    EXPECT_EQ(left.size() + arrived.size(), before.size());  // no partial copy left anywhere
    EXPECT_TRUE(f.everyRowExists());
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_EQ(f.general("LIB_FOLDER"), old);
    const QStringList rows = f.rowPaths();
    ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
    EXPECT_EQ(f.rowPaths(), rows);

    // With room made, the move again finishes the work: the tracks that went
    // ahead stay where they landed instead of being placed by the rules.
    QFile::remove(stick + "/.filler");
    f.ui.dialogResults = {stick};
    f.ui.answers = {Answer::Ok, Answer::Ok};
    EXPECT_TRUE(mnu_Library_Move(f.ctx));
    EXPECT_EQ(filesBelow(stick), before);
    EXPECT_EQ(f.general("LIB_FOLDER"), stick + "/");
    EXPECT_TRUE(f.everyRowExists());
}

TEST(LibraryMove, ARetryThatPassesAndAFileAnInterruptedMoveTookAheadLoseNothing)
{
    WorkFixture f;
    fill(f);
    const QMap<QString, FileState> before = filesBelow(f.main);
    // A move killed after this file's rename and before its record: the
    // file stands in its new place, the row names the old one.
    QDir().mkpath(f.env.path("New"));
    ASSERT_TRUE(QDir().rename(f.main + "top.mp3", f.env.path("New/top.mp3")));
    FailAt fail("library-move", 5);  // the five attempts at the first file that still has to move
    f.lib.faults = &fail;
    f.ui.dialogResults = {f.env.path("New")};
    f.ui.answers = {Answer::Ok, Answer::Yes};
    ASSERT_TRUE(mnu_Library_Move(f.ctx));
    EXPECT_EQ(f.ui.titles(), (QStringList{"Info", "Move failure", "Move report"}));
    EXPECT_EQ(filesBelow(f.env.path("New")), before);
    EXPECT_TRUE(f.ui.messages[2].text.startsWith("5 tracks in Library.\n\r5 tracks moved to "));
    EXPECT_TRUE(f.everyRowExists());
    EXPECT_TRUE(f.recordsMatchList());
}
