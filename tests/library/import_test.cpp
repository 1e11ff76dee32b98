// Import through Quarantaine: records, placing by the tags, clashes, the
// refusal of library folders and what failures leave behind.
#include <gtest/gtest.h>

#include "library/slots.h"
#include "library/track_import.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(Import, TracksLandInTheirRuleFolderOrStayInQuarantaine)
{
    WorkFixture f;
    const QString abba = f.source("a/1.mp3", tags("Abba", "Gold", "1", "Waterloo"));
    const QString anon = f.source("a/2.mp3", tags("", "Gold", "2", "Nobody"));
    TrackTags va = tags("Cher", "Hits", "3", "Believe");
    va.various = true;
    const QString various = f.source("a/3.mp3", va);
    const QByteArray abbaBytes = readFile(abba);

    for (const QString& s : {abba, anon, various})
        EXPECT_TRUE(Import_Track(f.ctx, s));

    // Placing keeps the file name; renaming is the user's own step.
    EXPECT_EQ(f.filesUnderMain(), (QStringList{"A/Abba/Gold/1.mp3", "Quarantaine/2.mp3", "Various Artists/Hits/3.mp3"}));
    EXPECT_EQ(readFile(abba), abbaBytes);  // the source stays as it was
    EXPECT_EQ(readFile(f.main + "A/Abba/Gold/1.mp3"), abbaBytes);
    ASSERT_EQ(f.lib.MP3_List.count(), 3);
    // The time measured from the audio: the tag has no length.
    const TrackRow& r = f.lib.MP3_List.row(0);
    EXPECT_EQ(QStringList(r.begin(), r.end()).mid(0, ColLastChanged) << r[ColFilelength],
              (QStringList{"Abba", "Gold", "1", "Waterloo", "00:01", "2001", "Pop", "No", f.main + "A/Abba/Gold", "1.mp3",
                           "TRACK 1", QString::number(abbaBytes.size())}));
    EXPECT_EQ(f.lib.MP3_List.field(1, ColFolder), f.main + "Quarantaine");
    EXPECT_EQ(f.lib.MP3_List.field(2, ColVA), "Yes");
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_EQ(f.counts(), "3 of 3");
    EXPECT_TRUE(f.ui.messages.empty());
    EXPECT_EQ(f.lib.search.Search_Artists.names(), (QStringList{"Abba", "Cher"}));
    EXPECT_TRUE(f.temps().isEmpty());
}

TEST(Import, FileExistsAsksAndMoveModeMovesOnlyOnOverwrite)
{
    WorkFixture f;
    const QString first = f.source("x/same.mp3", tags("", "", "", "one"));
    const QString second = f.source("y/same.mp3", tags("", "", "", "two"));
    f.app.Import_Mode = 1;
    ASSERT_TRUE(Import_Track(f.ctx, first));
    EXPECT_TRUE(QFileInfo::exists(first));  // a new file is copied even in move mode

    // No: the file in Quarantaine stands; it is listed already, so nothing is added.
    f.ui.answers = {Answer::No};
    ASSERT_TRUE(Import_Track(f.ctx, second));
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0].title, "File exists");
    EXPECT_EQ(f.ui.messages[0].text, "Following track allready exists in the library:\r\n" + f.main
                                         + "Quarantaine/same.mp3\r\nOverwrite this file?");
    EXPECT_EQ(f.lib.MP3_List.count(), 1);
    EXPECT_EQ(readFile(f.main + "Quarantaine/same.mp3"), readFile(first));

    // No, and the track is not listed: it is added again.
    f.lib.MP3_List.clear();
    f.ui.answers = {Answer::No};
    ASSERT_TRUE(Import_Track(f.ctx, second));
    EXPECT_EQ(f.lib.MP3_List.count(), 1);

    // Yes in move mode: the copy replaces the old one and the source goes.
    f.ui.answers = {Answer::Yes};
    ASSERT_TRUE(Import_Track(f.ctx, second));
    EXPECT_FALSE(QFileInfo::exists(second));
    EXPECT_TRUE(QFileInfo::exists(first));
    EXPECT_EQ(f.lib.MP3_List.count(), 1);
}

TEST(Import, FailuresLeaveSourcesAndGiveIdsBack)
{
    WorkFixture f;
    const QString src = f.source("a/1.mp3", tags("Abba", "Gold", "1", "Waterloo"));
    const QByteArray bytes = readFile(src);
    const QString target = f.main + "Quarantaine/1.mp3";

    FailAt copy("import-copy");
    f.lib.faults = &copy;
    EXPECT_FALSE(Import_Track(f.ctx, src));
    EXPECT_EQ(copy.asked, 5);
    EXPECT_EQ(f.ui.titles(), QStringList{"File error"});
    EXPECT_EQ(f.ui.messages[0].text, "The following track couldn't be added to the library:\r\n" + target
                                         + "\r\nThe most common cause is that the path/filename is to long.");

    f.ui.messages.clear();
    FailAt record("add-record");
    f.lib.faults = &record;
    EXPECT_FALSE(Import_Track(f.ctx, src));
    EXPECT_EQ(f.ui.titles(), (QStringList{"Add MP3 Error", "File error"}));
    EXPECT_EQ(f.ui.messages[0].text, "1.mp3 failed on importing to the Library.");
    EXPECT_FALSE(QFileInfo::exists(target));  // the copy goes, never the source
    EXPECT_EQ(readFile(src), bytes);
    EXPECT_EQ(f.lib.ID_COUNT, 0);  // the new slot given back
    EXPECT_EQ(f.general("ID_COUNT"), "0");

    // A failure of a reused slot gives the ID back to the free list.
    f.lib.faults = nullptr;
    Import_Track(f.ctx, f.source("b/1.mp3", tags("", "", "", "")));
    Import_Track(f.ctx, f.source("b/2.mp3", tags("", "", "", "")));
    Remove_Track_Row(f.ctx, 0);
    f.lib.faults = &record;
    EXPECT_FALSE(Add_MP3(f.ctx, src));
    EXPECT_EQ(f.lib.Free_IDs, std::vector<std::int32_t>{1});
    EXPECT_EQ(f.idfile(), idFileBytes({1}));
    EXPECT_EQ(f.lib.ID_COUNT, 2);
    EXPECT_TRUE(f.recordsMatchList());
}

TEST(Import, LibraryFoldersAreRefusedAndTheMainFolderSkippedInATree)
{
    WorkFixture f;
    // The Main Folder itself and a folder below it count as the library.
    for (const QString& chosen : {f.main.chopped(1), f.main + "Quarantaine"}) {
        f.ui.messages.clear();
        f.ui.dialogResults = {chosen};
        mnu_Library_Scan_Folder(f.ctx);
        ASSERT_EQ(f.ui.titles(), QStringList{"You cannot 'Import' Library folders!"});
        EXPECT_EQ(f.ui.messages[0].text, "The folder you selected is part of the current library,\r\n"
                                         "you should use the 'Refresh' function instead!\r\n\r\nRun 'Refresh' now?");
    }
    // Yes runs the refresh.
    f.ui.messages.clear();
    f.ui.dialogResults = {f.main};
    f.ui.answers = {Answer::Yes};
    mnu_Library_Scan_Tree(f.ctx);
    EXPECT_EQ(f.ui.titles(), (QStringList{"You cannot 'Import' Library trees!", "Refresh Report"}));

    // A tree holding the library: the Main Folder is passed over with a word.
    // (The fixture's Main Folder lies beside the .vkt in the private home.)
    f.source("Main-not/1.mp3", tags("", "", "", ""));  // a name that merely begins like it
    writeTaggedMp3(f.main + "inside.mp3", tags("", "", "", ""));
    f.ui.messages.clear();
    f.ui.dialogResults = {f.main.chopped(6)};  // the home: holds Main/ and Src/
    mnu_Library_Scan_Tree(f.ctx);
    EXPECT_EQ(f.ui.titles(), QStringList{"No need to re-import current library"});
    EXPECT_EQ(f.column(ColFilename), QStringList{"1.mp3"});
    EXPECT_TRUE(f.ui.events.contains("label18:Importing Track 1 from 1: 1.mp3"));
    EXPECT_FALSE(f.ui.locked);
}

TEST(Import, AddMp3MenuTakesOnlyMpegFiles)
{
    WorkFixture f;
    const QString text = f.env.path("Src/notes.mp3");
    writeFile(text, "not audio at all");
    f.ui.dialogResults = {text};
    mnu_Library_Add_MP3(f.ctx);
    EXPECT_TRUE(f.lib.MP3_List.isEmpty());
    EXPECT_TRUE(f.ui.messages.empty());
    ASSERT_EQ(f.ui.fileDialogs.size(), 1u);
    EXPECT_EQ(f.ui.fileDialogs[0].title, "Open");
    EXPECT_EQ(f.ui.fileDialogs[0].startFolder, f.app.paths.Music_Folder);

    f.ui.dialogResults = {f.source("a/1.mp3", tags("Abba", "Gold", "1", "Waterloo"))};
    mnu_Library_Add_MP3(f.ctx);
    EXPECT_EQ(f.lib.MP3_List.count(), 1);
    EXPECT_EQ(f.lib.MP3_List.selected(), 0);
}

TEST(Import, ALinkBackUpTheTreeEndsTheWalks)
{
    WorkFixture f;
    f.source("t/a/1.mp3", tags("", "", "", "one"));
    ASSERT_TRUE(QFile::link(f.env.path("Src/t"), f.env.path("Src/t/a/loop")));
    f.ui.dialogResults = {f.env.path("Src/t")};
    mnu_Library_Scan_Tree(f.ctx);
    EXPECT_EQ(f.column(ColFilename), QStringList{"1.mp3"});
    EXPECT_TRUE(f.ui.messages.empty());  // not met again through the link

    writeTaggedMp3(f.main + "x/2.mp3", tags("", "", "", "two"));
    ASSERT_TRUE(QFile::link(f.main + "x", f.main + "x/again"));
    f.ui.answers = {Answer::No};
    EXPECT_EQ(mnu_Library_Refresh(f.ctx).added, 1);
}
