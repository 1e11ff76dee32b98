// Opening a library: the list it gives, the questions and failures it shows,
// and how it repairs damaged files by rewriting them.
#include <gtest/gtest.h>

#include <QFile>

#include "library/sort_library.h"
#include "library_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString failureText(const char* which)
{
    return QStringLiteral("An error occured whilst trying to open the %1 Library.\r\n").arg(QLatin1String(which))
           + QStringLiteral("Please try again later.\r\n"
                            "If this error occurs always for this Library,\r\n"
                            "\nthen most certainly the Library file is corrupt.\r\n"
                            "If so, you better remove that library.\r\n"
                            "(menu function 'Library > Delete...')\r\n"
                            "Then rebuild it again.\r\n"
                            "(menu function 'Library > New')\r\n");
}

QStringList labels18(const ScriptedUi& ui, const QString& prefix)
{
    QStringList out;
    for (const QString& e : ui.events) {
        if (e.startsWith(QStringLiteral("label18:") + prefix))
            out << e.mid(8);
    }
    return out;
}

}  // namespace

TEST(OpenLibrary, ListsTracksByFolderThenFilename)
{
    LibraryFixture f;
    f.maker.track(makeTrack(QStringLiteral(" Zappa "), QStringLiteral(" T1 "), QStringLiteral("/m/b"), QStringLiteral("2.mp3")))
        .freeSlot()
        .track(makeTrack(QStringLiteral("abba"), QStringLiteral("T2"), QStringLiteral("/m/A"), QStringLiteral("x.mp3")))
        .track(makeTrack(QStringLiteral("Abba"), QStringLiteral("T3"), QStringLiteral("/m/a"), QStringLiteral("X.mp3")))
        .text("Short|Fields| 07 ")
        .track(makeTrack(QStringLiteral("Cher"), QStringLiteral("T4"), QStringLiteral("/m/b"), QStringLiteral("1.mp3")))
        .text("Beyonc\xe9|Alb\xfcm|1|Halo|03:00|2008|Pop|No|/m/c|halo.mp3|TRACK 7|2024|1")  // Windows-1252
        .key(QStringLiteral("LIB_FOLDER"), QString())
        .key(QStringLiteral("BAK_FOLDER"), QStringLiteral("/backup"));
    ASSERT_TRUE(f.open());
    const QByteArray trackfile = f.trackfile();

    EXPECT_EQ(f.column(ColFolder), (QStringList{"", "/m/A", "/m/a", "/m/b", "/m/b", "/m/c"}));
    EXPECT_EQ(f.column(ColFilename), (QStringList{"", "x.mp3", "X.mp3", "1.mp3", "2.mp3", "halo.mp3"}));
    EXPECT_EQ(f.column(ColArtist), (QStringList{"Short", "abba", "Abba", "Cher", "Zappa", "Beyonc\u00e9"}));
    EXPECT_EQ(f.column(ColID), (QStringList{"", "TRACK 3", "TRACK 4", "TRACK 6", "TRACK 1", "TRACK 7"}));
    EXPECT_EQ(f.lib.MP3_List.row(4)[ColTitle], QStringLiteral("T1"));       // trimmed
    EXPECT_EQ(f.lib.MP3_List.row(0)[ColTrack], QStringLiteral(" 07 "));     // kept as it stands
    EXPECT_EQ(f.lib.MP3_List.row(0)[ColFilelength], QString());
    EXPECT_EQ(f.lib.MP3_List.row(5)[ColAlbum], QStringLiteral("Alb\u00fcm"));
    EXPECT_EQ(f.lib.MP3_List.selected(), 0);
    EXPECT_FALSE(f.lib.MP3_List.hidden());
    EXPECT_EQ(f.lib.search.Search_Artists.names(), (QStringList{"Zappa", "abba", "Short", "Cher", "Beyonc\u00e9"}));

    EXPECT_TRUE(f.ui.messages.empty());
    EXPECT_EQ(f.trackfile(), trackfile);  // nothing to repair
    EXPECT_EQ(f.lib.ID_COUNT, 7);
    EXPECT_EQ(f.lib.Free_IDs, std::vector<std::int32_t>{2});
    EXPECT_EQ(f.ui.caption, QStringLiteral("ZEV's MP3 Sonorit - Music"));
    const QString music = f.app.paths.Music_Folder + QLatin1Char('/');
    EXPECT_EQ(f.app.Library_Main_Folder, music);
    EXPECT_EQ(f.general("LIB_FOLDER"), music);
    EXPECT_EQ(f.app.Backup_Folder, QStringLiteral("/backup/"));
    EXPECT_EQ(f.general("BAK_FOLDER"), QStringLiteral("/backup/"));
    EXPECT_TRUE(QFileInfo(music + QStringLiteral("Quarantaine")).isDir());
    EXPECT_EQ(f.app.settings.GetSetting("Startup", "Last_Used_Lib", ""), f.files.vkt);
    EXPECT_EQ(f.app.settings.GetSetting("Folders", "Album", ""), f.env.root());
    EXPECT_FALSE(f.ui.locked);
    EXPECT_FALSE(f.ui.shielded);
}

TEST(OpenLibrary, ProgressTextsAndTheSearchPhase)
{
    for (OpenVia via : {OpenVia::Path, OpenVia::Menu}) {
        LibraryFixture f;
        for (int i = 1; i <= 60; ++i) {
            if (i == 50)
                f.maker.freeSlot();
            else
                f.maker.track(makeTrack(QStringLiteral("A%1").arg(i), QStringLiteral("T"), QStringLiteral("/m"),
                                        QStringLiteral("f%1.mp3").arg(i)));
        }
        f.maker.key(QStringLiteral("ALBUM_COUNT"), QStringLiteral("59"));
        ASSERT_TRUE(f.open(via));
        EXPECT_EQ(labels18(f.ui, QStringLiteral("Importing")),
                  (QStringList{"Importing Track 25 from 59: f25.mp3", "Importing Track 60 from 59: f60.mp3"}));
        const bool searchPhase = f.ui.events.contains(QStringLiteral("label17:Collecting Search Info: "));
        EXPECT_EQ(searchPhase, via == OpenVia::Path);
        EXPECT_TRUE(f.ui.events.contains(QStringLiteral("label17:Reading Library File: ") + f.files.vkt));
        EXPECT_EQ(f.lib.search.Search_Artists.count(), 59);
    }
    for (OpenVia via : {OpenVia::Path, OpenVia::Menu}) {  // an empty library
        LibraryFixture f;
        ASSERT_TRUE(f.open(via));
        EXPECT_TRUE(f.lib.MP3_List.isEmpty());
        EXPECT_FALSE(f.ui.events.contains(QStringLiteral("label17:Collecting Search Info: ")));
        EXPECT_EQ(f.ui.progressMax, via == OpenVia::Menu ? 1 : 0);
        EXPECT_EQ(f.app.settings.GetSetting("Startup", "Last_Used_Lib", ""), f.files.vkt);
        EXPECT_EQ(f.app.Menu_Refresh_Wanted, via == OpenVia::Menu);
    }
}

TEST(OpenLibrary, ARecordWithTooManyFieldsIsQuestioned)
{
    const QByteArray record = "Art|Alb|01|Ti|03:00|1999|Pop|No|/m|t.mp3|TRACK 1|2024|123|extra|more";
    const QString question = QStringLiteral("Artist: Art\r\nAlbum: Alb\r\nTrack: 01\r\nTitle: Ti\r\nTime: 03:00\r\n"
                                            "Year: 1999\r\nGenre: Pop\r\nVA: No\r\nFolder: /m\r\nFilename: t.mp3\r\n"
                                            "ID: TRACK 1\r\nLast Changed: 2024\r\nFilelength: 123\r\n"
                                            "Unknown Item 1: extra\r\nUnknown Item 2: more\r\n"
                                            "\rDo you accept the known items?");
    for (Answer answer : {Answer::Yes, Answer::No}) {
        LibraryFixture f;
        f.maker.text(record).track(makeTrack("B", "b", "/m", "u.mp3"));
        f.ui.answers = {answer};
        ASSERT_TRUE(f.open());
        ASSERT_EQ(f.ui.messages.size(), 1u);
        EXPECT_EQ(f.ui.messages[0].title, QStringLiteral("Invalid MP3 Items"));
        EXPECT_EQ(f.ui.messages[0].text, question);
        EXPECT_EQ(f.ui.messages[0].buttons, Buttons::YesNo);
        if (answer == Answer::Yes) {
            ASSERT_EQ(f.lib.MP3_List.count(), 2);
            EXPECT_EQ(QStringList(f.lib.MP3_List.row(0).begin(), f.lib.MP3_List.row(0).end()).join('|').toUtf8(),
                      record.left(record.indexOf("|extra")));
        } else {
            EXPECT_EQ(f.column(ColFilename), QStringList{QStringLiteral("u.mp3")});
        }
        EXPECT_EQ(f.idfile(), QByteArray());  // the slot stays used either way
    }
}

TEST(OpenLibrary, FailureLeavesNoLibrary)
{
    struct Row {
        const char* what;
        const char* key;
        const char* value;
    };
    const Row rows[] = {
        {"no Trackfile name", "ALBUMLIB_NAME", nullptr},
        {"Trackfile missing", "ALBUMLIB_NAME", "/nonexistent/Trackfile000.tri"},
        {"slot count beyond 16 bits", "ID_COUNT", "32768"},
        {"negative slot count", "ID_COUNT", "-1"},
    };
    for (const Row& r : rows) {
        for (OpenVia via : {OpenVia::Path, OpenVia::Menu}) {
            LibraryFixture f;
            // An open library is closed first, also when the next one fails.
            f.maker.track(makeTrack("A", "a", "/m", "a.mp3"));
            ASSERT_TRUE(f.open());
            LibraryMaker bad(f.app.paths, f.env.path(QStringLiteral("Bad.vkt")));
            bad.track(makeTrack("B", "b", "/m", "b.mp3"));
            bad.key(QLatin1String(r.key), r.value ? QString::fromLatin1(r.value) : QString());
            const LibraryFiles badFiles = bad.write();
            bool opened;
            if (via == OpenVia::Menu) {
                f.ui.dialogResults = {badFiles.vkt};
                opened = mnu_Library_Open(f.ctx);
            } else {
                opened = Open_Library(f.ctx, badFiles.vkt);
            }
            EXPECT_FALSE(opened) << r.what;
            ASSERT_EQ(f.ui.messages.size(), 1u) << r.what;
            EXPECT_EQ(f.ui.messages[0].title, QStringLiteral("Open Library Failure"));
            EXPECT_EQ(f.ui.messages[0].text, failureText(via == OpenVia::Menu ? "selected" : "initial")) << r.what;
            EXPECT_EQ(f.ui.messages[0].icon, Icon::Warning);
            EXPECT_TRUE(f.app.Library_File.isEmpty() && f.app.Trackfile.isEmpty() && f.app.IDfile.isEmpty()
                        && f.app.Library_Main_Folder.isEmpty() && f.app.Quarantaine_Folder.isEmpty());
            EXPECT_TRUE(f.lib.MP3_List.isEmpty());
            EXPECT_EQ(f.lib.ID_COUNT, 0);
            EXPECT_EQ(f.ui.caption, QStringLiteral("ZEV's MP3 Sonorit - Bad"));
            EXPECT_TRUE(f.app.Menu_Refresh_Wanted);
            EXPECT_FALSE(f.ui.locked);
            EXPECT_FALSE(f.ui.shielded);
        }
    }
}

TEST(OpenLibrary, DamagedFilesAreRepairedByTheSort)
{
    // Each case damages a library of five slots (tracks 1, 2, 4, 5 and the
    // free slot 3) and names the tracks that survive the open.
    const auto tracks = [](LibraryMaker& m) {
        m.track(makeTrack("A", "a", "/m", "1.mp3")).track(makeTrack("B", "b", "/m", "2.mp3")).freeSlot()
            .track(makeTrack("D", "d", "/m", "4.mp3")).track(makeTrack("E", "e", "/m", "5.mp3"));
    };
    struct Row {
        const char* what;
        std::function<void(LibraryFixture&)> damage;
        QStringList survivors;
    };
    const QStringList all = {"1.mp3", "2.mp3", "4.mp3", "5.mp3"};
    const Row rows[] = {
        {"IDfile shorter than its count", [](LibraryFixture& f) { writeFile(f.files.idfile, QByteArray()); }, all},
        {"IDfile missing", [](LibraryFixture& f) { QFile::remove(f.files.idfile); }, all},
        {"garbage counts",
         [](LibraryFixture& f) {
             IniFile(f.files.vkt).write("GENERAL", "ALBUM_COUNT", "lots");
             IniFile(f.files.vkt).write("GENERAL", "ID_COUNT", "5 slots");
         },
         all},
        {"last record cut in its text",
         [](LibraryFixture& f) { writeFile(f.files.trackfile, f.trackfile().chopped(5)); },
         {"1.mp3", "2.mp3", "4.mp3"}},
        {"last record cut in its header",
         [](LibraryFixture& f) {
             const QByteArray t = f.trackfile();
             writeFile(f.files.trackfile, t.left(t.lastIndexOf("TRCK000005") + 7));
         },
         {"1.mp3", "2.mp3", "4.mp3"}},
    };
    for (const Row& r : rows) {
        LibraryFixture f;
        tracks(f.maker);
        f.files = f.maker.write();
        r.damage(f);
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt)) << r.what;
        EXPECT_TRUE(f.ui.messages.empty()) << r.what;
        EXPECT_EQ(f.column(ColFilename), r.survivors) << r.what;
        // Rewritten: IDs run from 1 to the count, no free slot.
        const int n = static_cast<int>(r.survivors.size());
        QByteArray expected;
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(f.lib.MP3_List.field(i, ColID), QStringLiteral("TRACK %1").arg(i + 1)) << r.what;
            expected += trackRecord(i + 1, recordText(f.lib.MP3_List.row(i)));
        }
        EXPECT_EQ(f.trackfile(), expected) << r.what;
        EXPECT_EQ(f.idfile(), QByteArray()) << r.what;
        EXPECT_TRUE(QFileInfo::exists(f.files.idfile)) << r.what;
        EXPECT_EQ(f.general("ID_COUNT"), QString::number(n)) << r.what;
        EXPECT_EQ(f.general("ALBUM_COUNT"), QString::number(n)) << r.what;
        EXPECT_TRUE(f.lib.Free_IDs.empty()) << r.what;
        EXPECT_TRUE(f.temps().isEmpty()) << r.what;

        // Once repaired, the next open finds nothing to repair.
        f.ui.events.clear();
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt)) << r.what;
        EXPECT_FALSE(f.ui.events.contains(QStringLiteral("label17:Sorting Library File"))) << r.what;
    }
}

TEST(OpenLibrary, OddButReadableFilesOpenAsTheyAre)
{
    {   // Slots beyond the end of the Trackfile read as free.
        LibraryFixture f;
        f.maker.track(makeTrack("A", "a", "/m", "1.mp3")).key(QStringLiteral("ID_COUNT"), QStringLiteral("4"));
        f.maker.key(QStringLiteral("ALBUM_COUNT"), QStringLiteral("4"));
        ASSERT_TRUE(f.open());
        EXPECT_EQ(f.column(ColFilename), QStringList{QStringLiteral("1.mp3")});
        EXPECT_FALSE(f.ui.events.contains(QStringLiteral("label17:Sorting Library File")));
    }
    {   // The reader goes by the NUL, not by the length field.
        LibraryFixture f;
        f.maker.track(makeTrack("A", "a", "/m", "1.mp3")).track(makeTrack("B", "b", "/m", "2.mp3"));
        f.files = f.maker.write();
        QByteArray t = f.trackfile();
        t[12] = char(0x7f);
        writeFile(f.files.trackfile, t);
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
        EXPECT_EQ(f.column(ColFilename), (QStringList{"1.mp3", "2.mp3"}));
    }
    {   // A main folder that is gone: the Quarantaine cannot be made, the tracks are listed.
        LibraryFixture f;
        f.maker.track(makeTrack("A", "a", "/m", "1.mp3"))
            .key(QStringLiteral("LIB_FOLDER"), f.env.path(QStringLiteral("gone/Main")));
        ASSERT_TRUE(f.open());
        EXPECT_EQ(f.lib.MP3_List.count(), 1);
        EXPECT_EQ(f.app.Library_Main_Folder, f.env.path(QStringLiteral("gone/Main/")));
        EXPECT_FALSE(QFileInfo::exists(f.env.path(QStringLiteral("gone"))));
        EXPECT_TRUE(f.ui.messages.empty());
    }
}

TEST(OpenLibrary, MenuEntryAndPathCheck)
{
    LibraryFixture f;
    f.maker.track(makeTrack("A", "a", "/m", "1.mp3")).key(QStringLiteral("BAK_FOLDER"), QStringLiteral("/b"));
    f.files = f.maker.write();

    f.app.Library_Data_Folder.clear();
    EXPECT_FALSE(mnu_Library_Open(f.ctx));  // cancelled
    ASSERT_EQ(f.ui.fileDialogs.size(), 1u);
    const FileDialogRequest& r = f.ui.fileDialogs[0];
    EXPECT_EQ(r.mode, FileDialogMode::Open);
    EXPECT_EQ(r.title, QStringLiteral("Open Library"));
    EXPECT_EQ(r.filterDescription, QStringLiteral("ZEV's MP3 Sonorit Library Files (*.vkt)"));
    EXPECT_EQ(r.filterPattern, QStringLiteral("*.vkt"));
    EXPECT_EQ(r.defaultExtension, QStringLiteral("vkt"));
    EXPECT_EQ(r.startFolder, f.env.path(QStringLiteral("bin")));
    EXPECT_TRUE(f.app.Library_File.isEmpty());

    const QString upper = f.env.path(QStringLiteral("MUSIC.VKT"));
    QFile::copy(f.files.vkt, upper);
    f.ui.dialogResults = {upper};
    EXPECT_FALSE(mnu_Library_Open(f.ctx));
    Check_Open_Library_File(f.ctx, upper);
    EXPECT_TRUE(f.app.Library_File.isEmpty());
    EXPECT_TRUE(f.ui.messages.empty());

    f.ui.dialogResults = {f.files.vkt};
    ASSERT_TRUE(mnu_Library_Open(f.ctx));
    EXPECT_EQ(f.app.Library_File, f.files.vkt);
    EXPECT_EQ(f.app.options.backupFolderText, QStringLiteral("/b/"));
    EXPECT_EQ(f.lib.search.Search_Artists.names(), QStringList{QStringLiteral("A")});
}

TEST(SortLibrary, RewritesInListOrderOrLeavesTheFilesAlone)
{
    LibraryFixture f;
    f.maker.track(makeTrack("C", "c", "/m/b", "1.mp3")).freeSlot()
        .track(makeTrack("A", "a", "/m/a", "2.mp3")).freeSlot()
        .track(makeTrack("B", "b", "/m/a", "1.mp3"));
    ASSERT_TRUE(f.open());
    const QByteArray trackfile = f.trackfile(), idfile = f.idfile();
    ASSERT_EQ(idfile, idFileBytes({2, 4}));

    for (const char* step : {"sort-write", "sort-commit", "sort-idfile"}) {
        FailAt always;
        always.step = QLatin1String(step);
        f.lib.faults = &always;
        f.ui.messages.clear();
        EXPECT_FALSE(Sort_Library_File(f.ctx)) << step;
        EXPECT_EQ(always.asked.count(QLatin1String(step)), 5) << step;
        ASSERT_EQ(f.ui.messages.size(), 1u) << step;
        EXPECT_EQ(f.ui.messages[0].title, QStringLiteral("ID Sort failure"));
        EXPECT_EQ(f.ui.messages[0].text,
                  QStringLiteral("Sorting ID numbers of current librarytracks failed, no changes are made,\r\n"
                                 "please select the menufunction Libray => Sort later."));
        EXPECT_EQ(f.trackfile(), trackfile) << step;
        EXPECT_EQ(f.idfile(), idfile) << step;
        EXPECT_EQ(f.column(ColID), (QStringList{"TRACK 5", "TRACK 3", "TRACK 1"})) << step;
        EXPECT_EQ(f.general("ID_COUNT"), QStringLiteral("5"));
        EXPECT_TRUE(f.temps().isEmpty()) << step;
        EXPECT_FALSE(f.ui.locked);
    }

    // No copy of the old Trackfile can be made (a folder stands in its way):
    // nothing may be written, since a later failure would have nothing to
    // put back.
    const QString blocker = f.app.paths.Data_Folder + QStringLiteral("TempTrack.bak");
    QDir().mkpath(blocker + QStringLiteral("/in-the-way"));
    FailAt idfileFails;
    idfileFails.step = QStringLiteral("sort-idfile");
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
    EXPECT_EQ(f.trackfile(), trackRecord(1, recordText(f.lib.MP3_List.row(0)))
                                 + trackRecord(2, recordText(f.lib.MP3_List.row(1)))
                                 + trackRecord(3, recordText(f.lib.MP3_List.row(2))));
    EXPECT_TRUE(f.trackfile().contains("B|Album|01|b|03:25|1999|Pop|No|/m/a|1.mp3|TRACK 1|"));
    EXPECT_EQ(f.idfile(), QByteArray());
    EXPECT_EQ(f.general("ID_COUNT"), QStringLiteral("3"));
    EXPECT_EQ(f.general("ALBUM_COUNT"), QStringLiteral("3"));
    EXPECT_TRUE(f.temps().isEmpty());
}
