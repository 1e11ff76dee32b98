// Opening a library: the list it gives, the questions and failures it shows,
// how it repairs damaged files by rewriting them, and the Sort.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <gtest/gtest.h>

#include <QFile>
#include <functional>

#include "library/sort_library.h"
#include "library/track_import.h"
#include "tests/support/tagged_mp3.h"
#include "library/trackfile.h"
#include "library_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

static const QString kSorting = "label17:Sorting Library File";

TEST(OpenLibrary, ListsTracksByFolderThenFilename)
{
    LibraryFixture f;
    f.maker.track(makeTrack(" Zappa ", " T1 ", "/m/b", "2.mp3")).freeSlot()
        .track(makeTrack("abba", "T2", "/m/A", "x.mp3")).track(makeTrack("Abba", "T3", "/m/a", "X.mp3"))
        .text("Short|Fields| 07 ").track(makeTrack("Cher", "T4", "/m/b", "1.mp3"))
        .text("Beyonc\xe9|Alb\xfcm|1|Halo|03:00|2008|Pop|No|/m/c|halo.mp3|TRACK 7|2024|1")  // Windows-1252
        .key("LIB_FOLDER", QString()).key("BAK_FOLDER", "/backup")
        .key("ID_COUNT", "9").key("ALBUM_COUNT", "8");  // slots 8, 9 lie past the end: empty, no repair
    ASSERT_TRUE(f.open());

    EXPECT_EQ(f.column(ColFilename), (QStringList{"", "x.mp3", "X.mp3", "1.mp3", "2.mp3", "halo.mp3"}));
    EXPECT_EQ(f.column(ColArtist), (QStringList{"Short", "abba", "Abba", "Cher", "Zappa", "Beyonc\u00e9"}));
    EXPECT_EQ(f.column(ColTitle), (QStringList{"", "T2", "T3", "T4", "T1", "Halo"}));
    EXPECT_EQ(f.column(ColTrack)[0], " 07 ");  // only artist, album and title are trimmed
    EXPECT_EQ(f.column(ColID), (QStringList{"", "TRACK 3", "TRACK 4", "TRACK 6", "TRACK 1", "TRACK 7"}));
    EXPECT_EQ(f.lib.search.Search_Artists.names(), (QStringList{"Zappa", "abba", "Short", "Cher", "Beyonc\u00e9"}));
    EXPECT_TRUE(f.ui.messages.empty());
    EXPECT_FALSE(f.ui.events.contains(kSorting));
    EXPECT_EQ(f.lib.ID_COUNT, 9);
    EXPECT_EQ(f.lib.Free_IDs, std::vector<std::int32_t>{2});
    const QString music = f.app.paths.Music_Folder + '/';  // no LIB_FOLDER: the music folder, written back
    EXPECT_EQ(f.app.Library_Main_Folder, music);
    EXPECT_EQ(f.general("LIB_FOLDER"), music);
    EXPECT_EQ(f.app.Backup_Folder, "/backup/");
    EXPECT_EQ(f.general("BAK_FOLDER"), "/backup/");
    EXPECT_TRUE(QFileInfo(music + "Quarantaine").isDir());
    EXPECT_EQ(f.app.settings.GetSetting("Startup", "Last_Used_Lib", ""), f.files.vkt);
    EXPECT_EQ(f.app.settings.GetSetting("Folders", "Album", ""), f.env.root());
    EXPECT_FALSE(f.ui.locked || f.ui.shielded);
}

TEST(OpenLibrary, ProgressTextsAndTheSearchPhase)
{
    for (OpenVia via : {OpenVia::Path, OpenVia::Menu}) {
        LibraryFixture f;
        for (int i = 1; i <= 60; ++i) {
            if (i == 50)
                f.maker.freeSlot();
            else
                f.maker.track(makeTrack(QString("A%1").arg(i), "T", "/m", QString("f%1.mp3").arg(i)));
        }
        ASSERT_TRUE(f.open(via));
        EXPECT_EQ(f.ui.events.filter("label18:Importing"),
                  (QStringList{"label18:Importing Track 25 from 59: f25.mp3",
                               "label18:Importing Track 60 from 59: f60.mp3"}));
        EXPECT_EQ(f.ui.events.contains("label17:Collecting Search Info: "), via == OpenVia::Path);
        EXPECT_EQ(f.lib.search.Search_Artists.count(), 59);

        LibraryFixture empty;
        ASSERT_TRUE(empty.open(via));
        EXPECT_FALSE(empty.ui.events.contains("label17:Collecting Search Info: "));
        EXPECT_EQ(empty.ui.progressMax, via == OpenVia::Menu ? 1 : 0);
        EXPECT_EQ(empty.app.Menu_Refresh_Wanted, via == OpenVia::Menu);
    }
}

TEST(OpenLibrary, RecordsWithTooManyFieldsAreQuestioned)
{
    LibraryFixture f;
    f.maker.text("Art|Alb|01|Ti|03:00|1999|Pop|No|/m|t.mp3|TRACK 1|2024|123|extra|more")
        .text("A|B|01|T|03:00|1999|Pop|No|/m|v.mp3|TRACK 2|2024|1|x").track(makeTrack("B", "b", "/m", "u.mp3"));
    f.ui.answers = {Answer::No, Answer::Yes};
    ASSERT_TRUE(f.open());
    ASSERT_EQ(f.ui.titles(), QStringList({"Invalid MP3 Items", "Invalid MP3 Items"}));
    EXPECT_EQ(f.ui.messages[0].text, "Artist: Art\r\nAlbum: Alb\r\nTrack: 01\r\nTitle: Ti\r\nTime: 03:00\r\n"
                                     "Year: 1999\r\nGenre: Pop\r\nVA: No\r\nFolder: /m\r\nFilename: t.mp3\r\n"
                                     "ID: TRACK 1\r\nLast Changed: 2024\r\nFilelength: 123\r\n"
                                     "Unknown Item 1: extra\r\nUnknown Item 2: more\r\n"
                                     "\rDo you accept the known items?");
    ASSERT_EQ(f.column(ColFilename), QStringList({"u.mp3", "v.mp3"}));  // refused, accepted, and one without question
    EXPECT_EQ(recordText(f.lib.MP3_List.row(1)), "A|B|01|T|03:00|1999|Pop|No|/m|v.mp3|TRACK 2|2024|1");
    EXPECT_EQ(f.idfile(), QByteArray());  // the refused record's slot stays used
}

TEST(OpenLibrary, FailureLeavesNoLibrary)
{
    const std::pair<const char*, const char*> damage[] = {  // a key of Bad.vkt and its value (nullptr: left out)
        {"ALBUMLIB_NAME", nullptr}, {"ALBUMLIB_NAME", "/nonexistent/T.tri"}, {"ID_COUNT", "32768"}, {"ID_COUNT", "-1"}};
    for (const auto& [key, value] : damage) {
        for (OpenVia via : {OpenVia::Path, OpenVia::Menu}) {
            SCOPED_TRACE(std::string(key) + "=" + (value ? value : "") + (via == OpenVia::Menu ? " menu" : ""));
            LibraryFixture f;
            f.maker.track(makeTrack("A", "a", "/m", "a.mp3"));
            ASSERT_TRUE(f.open());  // the open library is closed first, also when the next one fails
            const LibraryFiles bad = LibraryMaker(f.app.paths, f.env.path("Bad.vkt"))
                                         .track(makeTrack("B", "b", "/m", "b.mp3")).key(key, value).write();
            f.ui.dialogResults = {bad.vkt};
            EXPECT_FALSE(via == OpenVia::Menu ? mnu_Library_Open(f.ctx) : Open_Library(f.ctx, bad.vkt));
            ASSERT_EQ(f.ui.titles(), QStringList{"Open Library Failure"});
            const QString which = via == OpenVia::Menu ? "selected" : "initial";
            EXPECT_EQ(f.ui.messages[0].text,
                      "An error occured whilst trying to open the " + which + " Library.\r\nPlease try again later.\r\n"
                          "If this error occurs always for this Library,\r\n\nthen most certainly the Library file is "
                          "corrupt.\r\nIf so, you better remove that library.\r\n(menu function 'Library > Delete...')"
                          "\r\nThen rebuild it again.\r\n(menu function 'Library > New')\r\n");
            EXPECT_EQ(f.ui.messages[0].icon, Icon::Warning);
            EXPECT_TRUE(f.app.Library_File.isEmpty() && f.app.Trackfile.isEmpty() && f.app.IDfile.isEmpty()
                        && f.app.Library_Main_Folder.isEmpty() && f.app.Quarantaine_Folder.isEmpty());
            EXPECT_TRUE(f.lib.MP3_List.isEmpty() && f.lib.ID_COUNT == 0);
            EXPECT_EQ(f.ui.caption, "ZEV's MP3 Sonorit - Bad");
            EXPECT_TRUE(f.app.Menu_Refresh_Wanted);
            EXPECT_FALSE(f.ui.locked || f.ui.shielded);
        }
    }
}

TEST(OpenLibrary, DamagedFilesAreRepairedByRewritingThem)
{
    // Each case damages a library of tracks 1, 2, 4, 5 and the free slot 3
    // and names the tracks that survive the open.
    const QStringList all = {"1.mp3", "2.mp3", "4.mp3", "5.mp3"}, cut = {"1.mp3", "2.mp3", "4.mp3"};
    const struct {
        const char* what;
        std::function<void(LibraryFixture&, QByteArray& trackfile)> damage;
        QStringList survivors;
    } rows[] = {
        {"IDfile shorter than its count", [](auto& f, auto&) { writeFile(f.files.idfile, {}); }, all},
        {"IDfile missing", [](auto& f, auto&) { QFile::remove(f.files.idfile); }, all},
        {"garbage counts", [](auto& f, auto&) { f.maker.key("ALBUM_COUNT", "lots").key("ID_COUNT", "5 x").write(); },
         all},
        {"free IDs naming used slots", [](auto& f, auto&) { writeFile(f.files.idfile, QByteArray("\x02\0\0\0", 4)); },
         all},
        {"last record cut in its text", [](auto&, auto& t) { t.chop(5); }, cut},
        {"last record cut in its header", [](auto&, auto& t) { t.truncate(t.lastIndexOf("TRCK000005") + 7); }, cut},
        {"length pointing past the end", [](auto&, auto& t) { t[t.indexOf("TRCK000002") + 13] = 0x7f; }, all},
        {"ID column naming another slot", [](auto&, auto& t) { t.replace("|TRACK 2|", "|TRACK 9|"); }, all},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.what);
        LibraryFixture f;
        f.maker.track(makeTrack("A", "a", "/m", "1.mp3")).track(makeTrack("B", "b", "/m", "2.mp3")).freeSlot()
            .track(makeTrack("D", "d", "/m", "4.mp3")).track(makeTrack("E", "e", "/m", "5.mp3"));
        f.files = f.maker.write();
        QByteArray trackfile = f.trackfile();
        r.damage(f, trackfile);
        writeFile(f.files.trackfile, trackfile);
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
        EXPECT_TRUE(f.ui.messages.empty());
        EXPECT_TRUE(f.ui.events.contains(kSorting));
        EXPECT_EQ(f.column(ColFilename), r.survivors);
        // Rewritten in list order: IDs from 1 to the count, no free slot.
        EXPECT_EQ(f.column(ColID), QStringList({"TRACK 1", "TRACK 2", "TRACK 3", "TRACK 4"}).first(r.survivors.size()));
        EXPECT_EQ(f.trackfile(), f.listAsTrackfile());
        EXPECT_TRUE(QFileInfo::exists(f.files.idfile) && f.idfile().isEmpty());
        EXPECT_EQ(f.counts(), QString("%1 of %1").arg(r.survivors.size()));
        EXPECT_TRUE(f.lib.Free_IDs.empty());
        EXPECT_TRUE(f.temps().isEmpty());

        f.ui.events.clear();
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));  // nothing left to repair
        EXPECT_FALSE(f.ui.events.contains(kSorting));
        EXPECT_TRUE(Replace_Track_Record(f.ctx, 2, "x"));  // the writers find every slot again
    }
}

TEST(OpenLibrary, MenuEntryAndAMainFolderThatIsGone)
{
    LibraryFixture f;
    f.maker.track(makeTrack("A", "a", "/m", "1.mp3")).key("BAK_FOLDER", "/b").key("LIB_FOLDER", f.env.path("gone/M"));
    f.files = f.maker.write();
    f.app.Library_Data_Folder.clear();
    EXPECT_FALSE(mnu_Library_Open(f.ctx));  // cancelled
    ASSERT_EQ(f.ui.fileDialogs.size(), 1u);  // its texts the window's tests show
    EXPECT_EQ(f.ui.fileDialogs[0].mode, FileDialogMode::Open);
    EXPECT_EQ(f.ui.fileDialogs[0].startFolder, f.env.path("bin"));

    const QString upper = f.env.path("MUSIC.VKT");  // only ".vkt" exactly is a library
    QFile::copy(f.files.vkt, upper);
    f.ui.dialogResults = {upper, f.files.vkt};
    EXPECT_FALSE(mnu_Library_Open(f.ctx));
    EXPECT_TRUE(f.app.Library_File.isEmpty());
    ASSERT_TRUE(mnu_Library_Open(f.ctx));
    EXPECT_EQ(f.app.Library_File, f.files.vkt);
    EXPECT_EQ(f.app.options.backupFolderText, "/b/");
    EXPECT_EQ(f.lib.search.Search_Artists.names(), QStringList{"A"});
    // The Quarantaine cannot be made in the main folder that is gone; the tracks are listed all the same.
    EXPECT_EQ(f.app.Library_Main_Folder, f.env.path("gone/M/"));
    EXPECT_FALSE(QFileInfo::exists(f.env.path("gone")));
    EXPECT_EQ(f.lib.MP3_List.count(), 1);
    EXPECT_TRUE(f.ui.messages.empty());
}

TEST(SortLibrary, RewritesInListOrderOrLeavesTheFilesAlone)
{
    LibraryFixture f;
    f.maker.track(makeTrack("C", "c", "/m/b", "1.mp3")).freeSlot().track(makeTrack("A", "a", "/m/a", "2.mp3"))
        .freeSlot().track(makeTrack("B", "b", "/m/a", "1.mp3"));
    ASSERT_TRUE(f.open());
    const QByteArray trackfile = f.trackfile(), idfile = f.idfile();
    ASSERT_EQ(idfile, idFileBytes({2, 4}));
    for (const char* step : {"sort-write", "sort-commit", "sort-idfile"}) {
        SCOPED_TRACE(step);
        FailAt always(step);
        f.lib.faults = &always;
        f.ui.messages.clear();
        EXPECT_FALSE(Sort_Library_File(f.ctx));
        EXPECT_EQ(always.asked, 5);
        ASSERT_EQ(f.ui.titles(), QStringList{"ID Sort failure"});
        EXPECT_EQ(f.ui.messages[0].text, "Sorting ID numbers of current librarytracks failed, no changes are made,"
                                         "\r\nplease select the menufunction Libray => Sort later.");
        EXPECT_EQ(f.trackfile(), trackfile);
        EXPECT_EQ(f.idfile(), idfile);
        EXPECT_EQ(f.column(ColID), (QStringList{"TRACK 5", "TRACK 3", "TRACK 1"}));
        EXPECT_EQ(f.counts(), "3 of 5");
        EXPECT_TRUE(f.temps().isEmpty());
        EXPECT_FALSE(f.ui.locked);
    }
    // No copy of the old Trackfile can be made (a folder stands in its way):
    // nothing may be written, since a later failure would have nothing to put back.
    const QString blocker = f.app.paths.Data_Folder + "TempTrack.bak";
    QDir().mkpath(blocker + "/in-the-way");
    FailAt idfileFails("sort-idfile");
    f.lib.faults = &idfileFails;
    EXPECT_FALSE(Sort_Library_File(f.ctx));
    EXPECT_EQ(f.trackfile(), trackfile);
    EXPECT_EQ(f.idfile(), idfile);
    QDir(blocker).removeRecursively();

    f.lib.faults = nullptr;
    f.ui.messages.clear();
    ASSERT_TRUE(Sort_Library_File(f.ctx));
    EXPECT_TRUE(f.ui.messages.empty());
    EXPECT_EQ(f.column(ColID), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3"}));
    EXPECT_EQ(f.trackfile(), f.listAsTrackfile());
    EXPECT_EQ(f.idfile(), QByteArray());
    EXPECT_EQ(f.counts(), "3 of 3");
    EXPECT_TRUE(f.temps().isEmpty());
}

TEST(OpenLibrary, OnlyIdCountRecordsAreReadAndAFreeHighestSlotIsFilledWhereItStands)
{
    // A rewrite on the other platform left an old record behind the last slot.
    LibraryFixture f;
    f.maker.track(makeTrack("A", "a", "/m", "1.mp3")).track(makeTrack("Ghost", "g", "/m", "2.mp3"))
        .key("ID_COUNT", "1").key("ALBUM_COUNT", "1");
    // While another program changes the library, the tail stays on the disk.
    f.files = f.maker.write();
    const QByteArray written = f.trackfile();
    const int other = ::open(QFile::encodeName(f.files.trackfile + ".lock").constData(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt, OpenVia::Path));
    EXPECT_EQ(f.column(ColFilename), QStringList{"1.mp3"});
    EXPECT_EQ(f.trackfile(), written);
    ::close(other);

    ASSERT_TRUE(f.open());
    EXPECT_EQ(f.column(ColFilename), QStringList{"1.mp3"});
    EXPECT_FALSE(f.ui.events.contains(kSorting));
    EXPECT_EQ(f.trackfile(), f.listAsTrackfile());  // the tail is cut, so slot 2 appends right behind slot 1

    // The highest slot is free and in the IDfile: an import fills it in place
    // instead of appending a second record with its tag.
    LibraryFixture g;
    g.maker.track(makeTrack("A", "a", "/m", "1.mp3")).freeSlot();
    ASSERT_TRUE(g.open());
    ASSERT_EQ(g.lib.Free_IDs, std::vector<std::int32_t>{2});
    const QString mp3 = g.env.path("in/new.mp3");
    ASSERT_TRUE(writeTaggedMp3(mp3, {"B", "b", "2", "New", {}, {}}));
    ASSERT_TRUE(Add_MP3(g.ctx, mp3));
    EXPECT_EQ(g.column(ColID), (QStringList{"TRACK 1", "TRACK 2"}));
    EXPECT_EQ(g.trackfile().count("TRCK000002"), 1);
    EXPECT_EQ(g.trackfile(), g.listAsTrackfile());
    EXPECT_EQ(g.counts(), "2 of 2");
}
