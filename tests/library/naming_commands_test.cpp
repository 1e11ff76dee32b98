// The rename and relocate commands over track, selection, album and all.
#include <gtest/gtest.h>

#include "library/naming_commands.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(NamingCommands, AlbumRowsFollowArtistOrVariousAndNeedTheirTags)
{
    WorkFixture f;
    TrackTags va = tags("X", "Hits", "1", "V1");
    va.various = true;
    TrackTags va2 = tags("Y", "Hits", "2", "V2");
    va2.various = true;
    f.fill({{"in/a.mp3", tags("Abba", "Gold", "1", "One")},
             {"in/b.mp3", tags("Abba", "Gold", "2", "Two")},
             {"in/c.mp3", tags("abba", "Gold", "3", "Other artist by case")},
             {"in/d.mp3", tags("Abba", "", "4", "No album")},
             {"in/v1.mp3", va},
             {"in/v2.mp3", va2}});
    f.lib.MP3_List.select(f.rowOf("b.mp3"));
    mnu_Library_Rename_Album(f.ctx);
    EXPECT_TRUE(QFileInfo::exists(f.main + "in/Abba - Gold - 01 - One.mp3"));
    EXPECT_TRUE(QFileInfo::exists(f.main + "in/Abba - Gold - 02 - Two.mp3"));
    EXPECT_TRUE(QFileInfo::exists(f.main + "in/c.mp3"));  // the comparison sees case

    f.lib.MP3_List.select(f.rowOf("v2.mp3"));
    mnu_Library_Relocate_Album(f.ctx);
    EXPECT_TRUE(QFileInfo::exists(f.main + "Various Artists/Hits/v1.mp3"));
    EXPECT_TRUE(QFileInfo::exists(f.main + "Various Artists/Hits/v2.mp3"));
    EXPECT_EQ(f.lib.MP3_List.field(f.lib.MP3_List.selected(), ColFilename), "v2.mp3");  // found again after the sort
    EXPECT_EQ(f.trackfile(), f.listAsTrackfile());  // sorted afterwards

    f.lib.MP3_List.select(f.rowOf("d.mp3"));
    mnu_Library_Relocate_Album(f.ctx);
    ASSERT_EQ(f.ui.titles(), QStringList{"Unknown Artist and/or Album"});
    EXPECT_EQ(f.ui.messages[0].text, "No Artist and/or Album known for this Track");

    f.ui.messages.clear();
    f.lib.MP3_List.setField(f.rowOf("v1.mp3"), ColAlbum, "");
    f.lib.MP3_List.select(f.rowOf("v1.mp3"));
    mnu_Library_Rename_Album(f.ctx);
    ASSERT_EQ(f.ui.titles(), QStringList{"Unknown Album"});
    EXPECT_EQ(f.ui.messages[0].text, "No Album known for this Track");
}

TEST(NamingCommands, RelocateAllTidiesAndShowsProgress)
{
    WorkFixture f;
    f.fill({{"old/x/1.mp3", tags("Abba", "Gold", "1", "One")},
             {"old/x/2.mp3", tags("Cher", "Hits", "2", "Two")},
             {"old/x/desktop.ini", {}},
             {"Quarantaine/3.mp3", tags("", "", "3", "Three")}});
    QFile::remove(f.main + "old/x/desktop.ini");
    writeFile(f.main + "old/x/desktop.ini", "[x]");
    f.lib.MP3_List.select(0);
    mnu_Library_Relocate_All(f.ctx);
    // A track without artist and album goes to the Main Folder itself.
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"3.mp3", "A/Abba/Gold/1.mp3", "C/Cher/Hits/2.mp3"}));
    EXPECT_TRUE(f.ui.events.contains("label17:Relocating all Files..."));
    EXPECT_TRUE(f.ui.events.contains("label18:Relocating Track 2.mp3"));
    EXPECT_EQ(f.ui.progressMax, 3);
    EXPECT_FALSE(f.ui.shielded);
    EXPECT_EQ(f.trackfile(), f.listAsTrackfile());
    EXPECT_TRUE(f.ui.messages.empty());

    mnu_Library_Rename_All(f.ctx);
    EXPECT_EQ(f.filesUnderMain(), (QStringList{" -  - 03 - Three.mp3", "A/Abba/Gold/Abba - Gold - 01 - One.mp3",
                                               "C/Cher/Hits/Cher - Hits - 02 - Two.mp3"}));
    EXPECT_TRUE(f.ui.events.contains("label17:Renaming all Files..."));
    EXPECT_TRUE(f.recordsMatchList());
}

TEST(NamingCommands, RenameAllWithTwoTracksOfOneNameAsksAndShiftsRows)
{
    WorkFixture f;
    f.fill({{"in/a.mp3", tags("Abba", "Gold", "1", "One")},
             {"in/b.mp3", tags("Abba", "Gold", "1", "One")},
             {"in/c.mp3", tags("Cher", "Hits", "2", "Two")}});
    f.lib.MP3_List.select(0);
    f.ui.answers = {Answer::Yes};
    mnu_Library_Rename_All(f.ctx);
    EXPECT_EQ(f.ui.titles(), QStringList{"Confirm replacement"});
    // Row 1 (b) replaced row 0's file and went; the loop's index 2 then lay
    // past the end, so c kept its name.
    EXPECT_EQ(f.column(ColFilename), (QStringList{"Abba - Gold - 01 - One.mp3", "c.mp3"}));
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"in/Abba - Gold - 01 - One.mp3", "in/c.mp3"}));
    EXPECT_TRUE(f.recordsMatchList());
}

TEST(NamingCommands, SelectionWorksOnCollectedRowsAndTrackOnTheSelectedOne)
{
    WorkFixture f;
    f.fill({{"in/a.mp3", tags("Abba", "Gold", "1", "One")},
             {"in/b.mp3", tags("Abba", "Gold", "2", "Two")},
             {"in/c.mp3", tags("Cher", "Hits", "3", "Three")}});
    f.lib.MP3_List.setSelection({0, 2}, 2);
    mnu_Library_Relocate_Selection(f.ctx);
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"A/Abba/Gold/a.mp3", "C/Cher/Hits/c.mp3", "in/b.mp3"}));
    EXPECT_EQ(f.lib.MP3_List.field(f.lib.MP3_List.selected(), ColFilename), "c.mp3");

    // The Track command leaves the emptied folder and covers where they are.
    f.lib.MP3_List.select(f.rowOf("b.mp3"));
    mnu_Library_Relocate_Track(f.ctx);
    EXPECT_TRUE(QDir(f.main + "in").exists());
    mnu_Library_Rename_Track(f.ctx);
    EXPECT_TRUE(QFileInfo::exists(f.main + "A/Abba/Gold/Abba - Gold - 02 - Two.mp3"));

    // Nothing selected: nothing happens.
    f.lib.MP3_List.select(-1);
    const QByteArray before = f.trackfile();
    mnu_Library_Rename_All(f.ctx);
    mnu_Library_Relocate_Selection(f.ctx);
    EXPECT_EQ(f.trackfile(), before);
}

TEST(NamingCommands, ALastingRecordFailureIsReportedForEachTrackAsItMoves)
{
    WorkFixture f;
    f.fill({{"in/a.mp3", tags("Abba", "Gold", "1", "One")}, {"in/b.mp3", tags("Cher", "Hits", "2", "Two")}});
    const QString first = f.pathOf(0);
    FailAt fail("move-record");
    f.lib.faults = &fail;
    f.lib.MP3_List.select(0);
    mnu_Library_Rename_All(f.ctx);
    EXPECT_EQ(fail.asked, 2);  // each record as its file moves
    ASSERT_EQ(f.ui.titles(), (QStringList{"Library file update failure", "Library file update failure"}));
    EXPECT_TRUE(f.ui.messages[0].text.startsWith("The following track is renamed:\n\r" + first + "\n\r"));
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"in/Abba - Gold - 01 - One.mp3", "in/Cher - Hits - 02 - Two.mp3"}));
}
