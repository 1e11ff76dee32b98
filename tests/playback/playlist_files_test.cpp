// Playlist files: the own dialect byte for byte, extended and plain lists,
// lists of the Windows program, merging, export and bad input.
#include <gtest/gtest.h>

#include <QDir>

#include "playback_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QStringList rowsOf(const PlaybackState& s)
{
    QStringList out;
    for (int i = 0; i < s.Play_List.count(); ++i)
        out << s.Play_List.row(i)[0] + "|" + s.Play_List.row(i)[1] + "|" + s.Play_List.row(i)[2] + "|"
                + s.Play_List.row(i)[3];
    return out;
}

QStringList filesOf(const PlaybackState& s)
{
    return s.Play_File.mid(0, s.PlayList_Count);
}

}  // namespace

TEST(PlaylistFiles, OwnDialectIsWrittenAndReadBackByteForByteWithoutReadingTags)
{
    PlayerFixture f;
    const QString a = f.mp3("Music/Ärzte/01 Ein Lied.mp3", "Die Ärzte", "Ein Lied");
    const QString b = f.mp3("Music/b.mp3", "B", "Second");
    f.lib.MP3_List.append({});  // rows from the library list
    f.libraryRow(a, "Die Ärzte", "Album", "1", "Ein Lied");
    f.libraryRow(b, "B", "Other", "2", "Second");
    f.cmds.Add_To_PlayList(a, 1);
    f.cmds.Add_To_PlayList(b, 2);

    const QString list = f.env.path("Lists/mine.m3u");
    QDir().mkpath(f.env.path("Lists"));
    ASSERT_TRUE(f.files.saveTo(list));
    const QByteArray want = QString("#ZEVM3U\r\n"
                                    "#ZEVINF:Die Ärzte | Album | Ein Lied | 00:01\r\n" + a + "\r\n"
                                    "#ZEVINF:B | Other | Second | 00:01\r\n" + b + "\r\n").toUtf8();
    EXPECT_EQ(readFile(list), want);
    EXPECT_EQ(f.play.Playlist_File, list);
    EXPECT_EQ(f.play.Playlist_Name, "mine.m3u");
    EXPECT_EQ(f.app.settings.GetSetting("Folders", "Playlists", ""), f.env.path("Lists"));

    // Read back: the rows are the information lines (the tags say otherwise).
    PlayerFixture g;
    ASSERT_TRUE(g.files.openFile(list, false));
    EXPECT_EQ(rowsOf(g.play), (QStringList{"Die Ärzte|Album|Ein Lied|00:01", "B|Other|Second|00:01"}));
    EXPECT_EQ(filesOf(g.play), (QStringList{a, b}));
    ASSERT_TRUE(g.files.saveTo(g.env.path("again.m3u")));
    EXPECT_EQ(readFile(g.env.path("again.m3u")), want);

    // A vanished file keeps its row but not its element: rows and arrays part.
    QFile::remove(a);
    PlayerFixture h;
    ASSERT_TRUE(h.files.openFile(list, true));
    EXPECT_EQ(h.play.Play_List.count(), 2);
    EXPECT_EQ(filesOf(h.play), QStringList{b});
    EXPECT_EQ(h.play.Now_Source, b);  // loading plays the first entry
    EXPECT_EQ(h.play.Now_Artist, "Die Ärzte");  // ... with the row of the first
}

TEST(PlaylistFiles, ForeignListsTakeTheirRowsFromTheTags)
{
    PlayerFixture f;
    const QString dir = f.env.path("Lists");
    const QString song = f.mp3("Lists/Song.mp3", "Sung", "Song");
    const QString deep = f.mp3("Lists/Abba/Gold/Waterloo.mp3", "Abba", "Waterloo");
    const QString cafe = f.mp3("Lists/Café.mp3", "Edith", "Café");
    const QString list = dir + "/ext.m3u";
    writeFile(list, QByteArray("#EXTM3U\r\n"
                               "#EXTINF:123,Ignored - Info\r\n"
                               "Song.mp3\r\n"
                               "http://radio.example/stream.mp3\r\n"
                               "www.example.com/x.mp3\r\n"
                               "\r\n"
                               "D:\\x.mp3\r\n"
                               "C:\\Users\\Me\\Music\\Abba\\Gold\\Waterloo.mp3\r\n"
                               "Caf\xe9.mp3\n"
                               + deep.toUtf8()));
    ASSERT_TRUE(f.files.openFile(list, false));
    EXPECT_EQ(filesOf(f.play), (QStringList{song, deep, cafe, deep}));
    EXPECT_EQ(rowsOf(f.play), (QStringList{"Sung|Album|Song|00:00", "Abba|Album|Waterloo|00:00",
                                           "Edith|Album|Café|00:00", "Abba|Album|Waterloo|00:00"}));

    EXPECT_EQ(Resolve_Playlist_Entry("sub\\a.mp3", "/m"), "/m/sub/a.mp3");
    EXPECT_EQ(Resolve_Playlist_Entry("/abs/a.mp3", "/m"), "/abs/a.mp3");
    EXPECT_EQ(Resolve_Playlist_Entry("D:\\x.mp3", "/m"), "/x.mp3");
    EXPECT_EQ(Parse_Playlist("#ZEVM3U", "/m").dialect, PlaylistDialect::Own);
    EXPECT_EQ(Parse_Playlist("a.mp3\rb.mp3", "/m").items.size(), 2u);
}

TEST(PlaylistFiles, MergeAddsRowsFromTagsAndSavesTheCurrentList)
{
    PlayerFixture f;
    const QString a = f.mp3("a.mp3", "A", "Ay"), b = f.mp3("b.mp3", "B", "Bee");
    const QString own = f.env.path("own.m3u"), plain = f.env.path("plain.m3u");
    writeFile(own, "#ZEVM3U\r\n#ZEVINF:x | y | z | 01:00\r\n" + b.toUtf8() + "\r\n");
    writeFile(plain, "b.mp3\r\n");
    f.entries({a});

    // A foreign list with one entry: one row, one element.
    ASSERT_TRUE(f.files.mergeFile(plain));
    EXPECT_EQ(f.play.Play_List.count(), 2);
    EXPECT_EQ(filesOf(f.play), (QStringList{a, b}));
    // An own list with one entry: two rows, one element.
    ASSERT_TRUE(f.files.mergeFile(own));
    EXPECT_EQ(rowsOf(f.play).mid(2), (QStringList{"x|y|z|01:00", "B|Album|Bee|00:00"}));
    EXPECT_EQ(filesOf(f.play), (QStringList{a, b, b}));
    EXPECT_TRUE(f.play.Playlist_File.isEmpty());  // the merged file is not the current one

    // With a current file the merge saves it; the question can say no.
    const QString current = f.env.path("current.m3u");
    f.files.saveTo(current);
    f.files.mergeFile(plain);
    EXPECT_TRUE(readFile(current).endsWith(b.toUtf8() + "\r\n"));
    EXPECT_EQ(readFile(current).count("#ZEVINF:"), 4);
    f.ui.dialogResults = {plain};
    f.files.mnu_Playlist_Merge();  // answered No
    EXPECT_EQ(f.play.PlayList_Count, 4);
    EXPECT_EQ(f.ui.messages.back().title, "Merging Playlists");

    // Export copies each entry's file under its own name.
    const QString out = f.env.path("out");
    QDir().mkpath(out);
    EXPECT_EQ(f.files.exportTo(out), 4);
    EXPECT_EQ(QDir(out).entryList(QDir::Files), (QStringList{"a.mp3", "b.mp3"}));
}

TEST(PlaylistFiles, BadInputLoadsTheGoodEntriesAndWritesNothing)
{
    PlayerFixture f;
    const QString dir = f.env.path("Bad");
    const QString good = f.mp3("Bad/good.mp3", "G", "Good");
    const QString latin = f.mp3("Bad/\xc3\xa9t\xc3\xa9.mp3", "E", "Ete");  // été
    QDir().mkpath(dir + "/folder.mp3");
    QByteArray garbage;
    for (int i = 0; i < 4096; ++i)
        garbage += static_cast<char>((i * 7919) & 0xFF);
    const QByteArray bytes = "#EXTM3U\r\n" + garbage + "\r\n" + QByteArray(2 * 1024 * 1024, 'a') + "\r\n"
        + "missing.mp3\r\nhttp://x/y.mp3\r\nfolder.mp3\r\n" + "\xe9t\xe9.mp3\r\n" + "good.mp3\r\n"
        + QByteArray("\0\0\0good.mp3\r\n", 13);
    const QString list = dir + "/bad.m3u";
    writeFile(list, bytes);
    const QStringList before = filesUnder(dir);

    ASSERT_TRUE(f.files.openFile(list, true));
    EXPECT_EQ(filesOf(f.play), (QStringList{latin, good}));
    EXPECT_EQ(f.play.Play_List.count(), 2);
    EXPECT_EQ(filesUnder(dir), before);
    EXPECT_EQ(readFile(list), bytes);

    // Files that are no list are refused and change nothing.
    EXPECT_FALSE(f.files.openFile(dir + "/none.m3u"));
    EXPECT_FALSE(f.files.openFile(good));
    EXPECT_FALSE(f.files.openFile(dir + "/folder.mp3"));
    EXPECT_EQ(f.play.PlayList_Count, 2);
}
