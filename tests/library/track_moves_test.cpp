// Rename and relocate of one track: names and folders by the rules, clashes,
// folder tidying, the playlist's paths and what a failed move leaves.
#include <gtest/gtest.h>

#include "library/track_import.h"
#include "library/track_moves.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

// Imports a file that stays in Quarantaine (the test sets its row afterwards).
int addLoose(WorkFixture& f, const QString& name, const TrackTags& t)
{
    Add_MP3(f.ctx, f.source("loose/" + name, t));
    return f.lib.MP3_List.count() - 1;
}

}  // namespace

TEST(TrackMoves, RenameGivesTheRuleNameAndKeepsRecordAndPlaylistTrue)
{
    WorkFixture f;
    const int row = addLoose(f, "x.mp3", tags("Abba", "Gold", "3", "Waterloo"));
    const QString old = f.pathOf(row);
    QStringList playFile{"/other.mp3", old, old};
    f.lib.Playlist_Paths = &playFile;
    ASSERT_TRUE(Rename_Track(f.ctx, row));
    EXPECT_EQ(f.pathOf(row), f.env.path("Src/loose/Abba - Gold - 03 - Waterloo.mp3"));
    EXPECT_TRUE(QFileInfo::exists(f.pathOf(row)));
    EXPECT_FALSE(QFileInfo::exists(old));
    EXPECT_EQ(playFile, (QStringList{"/other.mp3", f.pathOf(row), old}));  // the first entry only
    EXPECT_TRUE(f.recordsMatchList());

    // A name that fits already changes nothing, not even the date column.
    f.lib.MP3_List.setField(row, ColLastChanged, "stale");
    const QByteArray before = f.trackfile();
    ASSERT_TRUE(Rename_Track(f.ctx, row));
    EXPECT_EQ(f.lib.MP3_List.field(row, ColLastChanged), "stale");
    EXPECT_EQ(f.trackfile(), before);
    EXPECT_TRUE(f.ui.messages.empty());
}

TEST(TrackMoves, RenameOntoAnotherFileAsksAndOnYesDropsOneRow)
{
    WorkFixture f;
    const int a = addLoose(f, "a.mp3", tags("Abba", "Gold", "3", "Waterloo"));
    const int b = addLoose(f, "Abba - Gold - 03 - Waterloo.mp3", tags("Abba", "Gold", "3", "Waterloo"));
    const QString clash = f.pathOf(b);
    const QByteArray aBytes = readFile(f.pathOf(a));

    f.ui.answers = {Answer::No};
    ASSERT_TRUE(Rename_Track(f.ctx, a));
    ASSERT_EQ(f.ui.titles(), QStringList{"Confirm replacement"});
    EXPECT_EQ(f.ui.messages[0].text, clash + " exists.\n\rDo you want to replace this file?");
    EXPECT_EQ(f.lib.MP3_List.count(), 2);
    EXPECT_TRUE(QFileInfo::exists(f.pathOf(a)));

    // Yes: a's file replaces b's; the row renamed and the record of the
    // selected row go, the row of the new path stays.
    f.lib.MP3_List.select(a);
    f.ui.answers = {Answer::Yes};
    ASSERT_TRUE(Rename_Track(f.ctx, a));
    ASSERT_EQ(f.lib.MP3_List.count(), 1);
    EXPECT_EQ(f.pathOf(0), clash);
    EXPECT_EQ(readFile(clash), aBytes);
    EXPECT_EQ(f.lib.MP3_List.field(0, ColID), "TRACK 2");
    EXPECT_EQ(f.idfile(), idFileBytes({1}));
    EXPECT_EQ(f.counts(), "1 of 2");
    EXPECT_TRUE(f.recordsMatchList());
}

TEST(TrackMoves, RecordFailureIsReportedAndTheMoveStands)
{
    WorkFixture f;
    const int row = addLoose(f, "x.mp3", tags("Abba", "Gold", "3", "Waterloo"));
    const QString old = f.pathOf(row);
    FailAt fail("move-record");
    f.lib.faults = &fail;
    ASSERT_TRUE(Rename_Track(f.ctx, row));
    ASSERT_EQ(f.ui.titles(), QStringList{"Library file update failure"});
    EXPECT_EQ(f.ui.messages[0].text, "The following track is renamed:\n\r" + old
                                         + "\n\rBUT, the tags could not be saved in the library-file.\n\r"
                                           "Please select the menufunction Libray => Refresh as soon as possible.");
    EXPECT_TRUE(QFileInfo::exists(f.pathOf(row)));

    // A rename whose move fails stops before row or record change.
    FailAt move("rename-move");
    f.lib.faults = &move;
    f.ui.messages.clear();
    f.lib.MP3_List.setField(row, ColTitle, "Other");
    const QString before = f.pathOf(row);
    EXPECT_FALSE(Rename_Track(f.ctx, row));
    EXPECT_EQ(f.ui.titles(), QStringList{"Rename failure"});
    EXPECT_EQ(f.pathOf(row), before);
    EXPECT_TRUE(QFileInfo::exists(before));
}

TEST(TrackMoves, RelocateWithTidyTakesCoversAndRemovesEmptiedFolders)
{
    WorkFixture f;
    // An old layout: Main/Old Artist/Old Album/ with two tracks, covers (one
    // named in lower case, as a copy from a Windows disk has it) and desktop.ini.
    const QString oldAlbum = f.main + "Old Artist/Old Album";
    writeTaggedMp3(oldAlbum + "/1.mp3", tags("Abba", "Gold", "1", "One"));
    writeTaggedMp3(oldAlbum + "/2.mp3", tags("Abba", "Gold", "2", "Two"));
    for (const char* extra : {"folder.jpg", "AlbumArtSmall.jpg", "desktop.ini"})
        writeFile(oldAlbum + "/" + extra, extra);
    Add_MP3(f.ctx, oldAlbum + "/1.mp3");
    Add_MP3(f.ctx, oldAlbum + "/2.mp3");

    // The Track command's way: no tidy, nothing but the file moves.
    ASSERT_TRUE(Relocate_Track(f.ctx, 0, false));
    EXPECT_EQ(f.pathOf(0), f.main + "A/Abba/Gold/1.mp3");
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"A/Abba/Gold/1.mp3", "Old Artist/Old Album/2.mp3",
                                               "Old Artist/Old Album/AlbumArtSmall.jpg",
                                               "Old Artist/Old Album/desktop.ini", "Old Artist/Old Album/folder.jpg"}));
    // The last track with tidy: covers follow, folders go upwards while empty.
    QDir().mkpath(f.main + "Old Artist/Keep");  // ... except one that holds a folder
    ASSERT_TRUE(Relocate_Track(f.ctx, 1, true));
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"A/Abba/Gold/1.mp3", "A/Abba/Gold/2.mp3", "A/Abba/Gold/AlbumArtSmall.jpg",
                                               "A/Abba/Gold/folder.jpg"}));
    EXPECT_FALSE(QDir(oldAlbum).exists());
    EXPECT_TRUE(QDir(f.main + "Old Artist/Keep").exists());
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_TRUE(f.ui.messages.empty());

    // A track taken in from outside the library leaves its old folder there.
    const int outside = addLoose(f, "3.mp3", tags("Abba", "Gold", "3", "Three"));
    ASSERT_TRUE(Relocate_Track(f.ctx, outside, true));
    EXPECT_TRUE(QDir(f.env.path("Src/loose")).exists());
}

TEST(TrackMoves, RelocateDropsOneTrailingDotAndLeavesQuarantaineAlone)
{
    WorkFixture f;
    const int a = addLoose(f, "1.mp3", tags("Abba", "Vol.", "1", "One"));
    const int b = addLoose(f, "2.mp3", tags("Abba", "Vol..", "1", "Two"));
    ASSERT_TRUE(Relocate_Track(f.ctx, a, true));
    ASSERT_TRUE(Relocate_Track(f.ctx, b, true));
    EXPECT_EQ(f.lib.MP3_List.field(a, ColFolder), f.main + "A/Abba/Vol");
    EXPECT_EQ(f.lib.MP3_List.field(b, ColFolder), f.main + "A/Abba/Vol..");

    // Out of Quarantaine: the folder and its covers stay.
    WorkFixture g;
    writeFile(g.main + "Quarantaine/Folder.jpg", "cover");
    ASSERT_TRUE(Import_Track(g.ctx, g.source("q/1.mp3", tags("Abba", "Gold", "1", "One"))));
    EXPECT_EQ(g.filesUnderMain(), (QStringList{"A/Abba/Gold/1.mp3", "Quarantaine/Folder.jpg"}));
}

TEST(TrackMoves, RelocateClashAndFailedMove)
{
    WorkFixture f;
    writeTaggedMp3(f.main + "A/Abba/Gold/1.mp3", tags("Someone", "Else", "9", "Nine"));
    const int row = addLoose(f, "1.mp3", tags("Abba", "Gold", "1", "One"));
    const QString old = f.pathOf(row);
    const QByteArray mine = readFile(old);

    f.ui.answers = {Answer::No};
    ASSERT_TRUE(Relocate_Track(f.ctx, row, true));
    EXPECT_EQ(f.ui.titles(), QStringList{"Confirm replacement"});
    EXPECT_EQ(f.pathOf(row), old);

    FailAt move("relocate-move");
    f.lib.faults = &move;
    f.ui.messages.clear();
    f.ui.answers = {Answer::Yes};
    ASSERT_TRUE(Relocate_Track(f.ctx, row, true));
    EXPECT_EQ(f.ui.titles(), (QStringList{"Confirm replacement", "Relocate failure"}));
    EXPECT_EQ(f.ui.messages[1].text, "The following track couldn't be relocated:\n\r" + old);
    EXPECT_EQ(f.pathOf(row), old);
    EXPECT_EQ(readFile(old), mine);

    f.lib.faults = nullptr;
    f.ui.answers = {Answer::Yes};
    ASSERT_TRUE(Relocate_Track(f.ctx, row, true));
    EXPECT_EQ(readFile(f.main + "A/Abba/Gold/1.mp3"), mine);
    EXPECT_TRUE(f.recordsMatchList());
}
