// The album tagger over a real library: what its openers pick, how its rows
// move, what a write puts into every file, and a run that meets a bad track.
#include <gtest/gtest.h>

#include <QFile>

#include "playback/covers.h"
#include "tagedit/album_tagger.h"
#include "tagedit/track_follow.h"
#include "tagedit_fixture.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

const QByteArray kPicture = QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(300, 'p') + QByteArray("\xFF\xD9", 2);

struct AlbumFixture : TagEditFixture {
    SuperTagging window{edit};
    QStringList labels;  // LabelName as the write went

    AlbumFixture()
    {
        window.progressed = [this] {
            if (labels.isEmpty() || labels.last() != window.LabelName)
                labels << window.LabelName;
        };
    }
    // Tracks "Art - Alb" 1..n, each with a comment of its own, the library
    // filled from them.
    QStringList album(int n, const QByteArray& extra = {})
    {
        QStringList paths;
        for (int i = 1; i <= n; ++i) {
            const QByteArray no = QByteArray::number(i);
            paths << put(QStringLiteral("Art/Alb/%1.mp3").arg(i, 2, 10, QLatin1Char('0')),
                         tag(textFrame("TPE1", "Art") + textFrame("TALB", "Alb") + textFrame("TRCK", no)
                             + textFrame("TIT2", "Song " + no) + textFrame("TYER", "1990") + textFrame("TCON", "Rock")
                             + commFrame("deu", "note", "Mine " + no) + (i == 2 ? extra : QByteArray())));
        }
        fill();
        return paths;
    }
    void openAlbumOf(const QString& path)
    {
        lib.MP3_List.select(Library_Row_Of(lib.MP3_List, path));
        window.Open_Album(Album_Tag_Rows(edit));
    }
    QByteArray coverOf(const QString& path) const
    {
        const QString out = env.path("extracted.jpg");
        QFile::remove(out);
        return Extract_Cover(path, out) ? readFile(out) : QByteArray();
    }
};

}  // namespace

TEST(AlbumTagger, OpenersTellWhatTheTrackLacks)
{
    struct Case {
        const char* artist;
        const char* album;
        const char* va;
        int selected;  // rows selected
        const char* title;
    };
    const Case cases[] = {
        {"Art", "", "Yes", 1, "Unknown Album: No Album known for this Track"},
        {"", "Alb", "No", 1, "Unknown Artist/Album: No Artist/Album known for this Track"},
        {"Art", "", "No", 1, "Unknown Artist/Album: No Artist/Album known for this Track"},
        {"Art", "Alb", "No", 1, ""},
    };
    for (const Case& k : cases) {
        AlbumFixture f;
        TrackRow row = makeTrack(k.artist, "T", f.main, "t.mp3", k.album);
        row[ColVA] = k.va;
        f.lib.MP3_List.append(row);
        f.lib.MP3_List.select(0);
        const auto rows = Album_Tag_Rows(f.edit);
        QStringList told;
        for (const auto& m : f.ui.messages)
            told << m.title + ": " + m.text;
        EXPECT_EQ(told.join(""), k.title);
        EXPECT_EQ(rows.empty(), *k.title != 0);
        // One row is no selection to tag together.
        EXPECT_TRUE(Super_Tag_Rows(f.edit).empty());
        EXPECT_EQ(f.ui.messages.back().title, "Multiple file selection required");
    }
}

TEST(AlbumTagger, WriteStampsEveryTrackAndTakesRowArtistsOnlyForVariousArtists)
{
    for (const bool various : {false, true}) {
        SCOPED_TRACE(various ? "various artists" : "one artist");
        AlbumFixture f;
        const QStringList paths = f.album(3);
        f.openAlbumOf(paths[2]);
        ASSERT_EQ(f.window.Track_Count(), 3);
        EXPECT_EQ(f.window.caption(), "Album Tagging");
        EXPECT_EQ(f.window.tracks()[0].FileName, "01.mp3");  // track order, not the selected row first
        EXPECT_EQ(f.window.TextGenre, "Rock");
        EXPECT_EQ(f.window.Combo_Genre, Genre_Index("Rock"));
        f.window.TextArtist = "New Artist";
        f.window.Type_Year("19x9-9");
        f.window.setTitle(1, "  Second  ");
        for (int i = 0; i < 3; ++i)
            f.window.setArtist(i, QStringLiteral("Guest %1").arg(i + 1));
        f.window.setCheckVA(various);
        EXPECT_EQ(f.window.TextArtist_Enabled(), !various);

        EXPECT_EQ(f.window.Write_Album(), 0);
        EXPECT_TRUE(f.ui.messages.empty()) << (f.ui.messages.empty() ? "" : (f.ui.messages[0].title + f.ui.messages[0].text).toStdString());
        EXPECT_EQ(f.labels, QStringList({"Updating Song 1", "Updating   Second  ", "Updating Song 3"}));
        EXPECT_EQ(f.window.ProgressBar1_Value, 3);
        for (int i = 0; i < 3; ++i) {
            const TagState s = f.readBack(paths[i]);
            const Tag2FieldSet& t = s.Tag2_Fields;
            const QString artist = various ? QStringLiteral("Guest %1").arg(i + 1) : "New Artist";
            EXPECT_EQ(t.Artist, artist);
            EXPECT_EQ(t.Track, QStringLiteral("0%1").arg(i + 1));
            EXPECT_EQ(t.Year, "1999");
            EXPECT_EQ(t.Title, i == 1 ? "Second" : QStringLiteral("Song %1").arg(i + 1));
            EXPECT_EQ(t.VA, various ? "Various Artists" : "");
            EXPECT_EQ(t.Comment, TagStamp());  // the track's own comment is gone
            EXPECT_EQ(s.Comment_Language, "eng");
            EXPECT_FALSE(t.Frames.isEmpty());
            EXPECT_FALSE(t.Length.isEmpty());
            EXPECT_EQ(s.Tag1_Record.Artist.shown().trimmed(), artist);
            EXPECT_EQ(s.Tag1_Record.Track, i + 1);
            EXPECT_EQ(s.Tag1_Record.Comment.shown().trimmed(), "");
            EXPECT_EQ(s.Tag1_Record.Genre, Genre_Index("Rock"));
            const TrackRow& row = f.lib.MP3_List.row(f.rowOf(paths[i]));
            EXPECT_EQ(row[ColArtist], artist);
            EXPECT_EQ(row[ColTrack], t.Track);
            EXPECT_EQ(row[ColVA], various ? "Yes" : "No");
        }
        EXPECT_TRUE(f.recordsMatchList());
        EXPECT_TRUE(f.temps().isEmpty());
    }
}

TEST(AlbumTagger, PlusMinusAndMovesKeepEveryFileAndItsNumber)
{
    AlbumFixture f;
    const QStringList paths = f.album(2);
    f.openAlbumOf(paths[0]);
    EXPECT_FALSE(f.window.CommandUp_Enabled());  // the first row cannot go up
    EXPECT_TRUE(f.window.CommandDown_Enabled());
    EXPECT_FALSE(f.window.CommandTrackMin_Enabled());
    f.window.CommandTrackMin();  // no entry of a file goes
    EXPECT_EQ(f.window.TextTrackCount(), "2");

    f.window.ComboCover_Click(2);  // "Track 02 Cover" (a track without picture)
    f.window.CommandTrackPlus();
    f.window.CommandTrackPlus();
    EXPECT_EQ(f.window.TextTrackCount(), "4");
    // The empty entry moves up between the files: track 02 becomes 03.
    f.window.Mark(2);
    f.window.CommandUp();
    EXPECT_EQ(f.window.Marked(), 1);
    QStringList order;
    for (const AlbumTrack& t : f.window.tracks())
        order << t.Track_Number + ":" + t.FileName;
    EXPECT_EQ(order, QStringList({"01:01.mp3", "02:", "03:02.mp3", "04:"}));
    EXPECT_EQ(f.window.ComboCover(), QStringList({"Browse Cover", "Track 01 Cover", "Track 03 Cover"}));
    EXPECT_EQ(f.window.ComboCover_Index(), 2);  // the picked track under its new number
    f.window.Mark(3);
    EXPECT_FALSE(f.window.CommandDown_Enabled());
    // Minus takes the last empty entry, then the one between the files.
    f.window.CommandTrackMin();
    f.window.CommandTrackMin();
    EXPECT_EQ(f.window.Track_Count(), 2);
    EXPECT_EQ(f.window.tracks()[1].Track_Number, "02");
    EXPECT_EQ(f.window.Marked(), 1);

    // An empty entry is passed at write time.
    f.window.CommandTrackPlus();
    f.window.Mark(2);
    f.window.CommandUp();
    EXPECT_EQ(f.window.Write_Album(), 0);
    EXPECT_EQ(f.labels, QStringList({"Updating Song 1", "Skipping empty track entree", "Updating Song 2"}));
    EXPECT_EQ(f.readBack(paths[1]).Tag2_Fields.Track, "03");
}

TEST(AlbumTagger, ScrollingShowsTheTracksBelowTheTwentyFifth)
{
    AlbumFixture f;
    f.album(1);
    f.lib.MP3_List.select(0);
    f.window.Open_Album(Album_Tag_Rows(f.edit));
    for (int i = 0; i < 24; ++i)
        f.window.CommandTrackPlus();
    EXPECT_FALSE(f.window.VScroll1_Visible());
    f.window.CommandTrackPlus();
    ASSERT_TRUE(f.window.VScroll1_Visible());
    EXPECT_EQ(f.window.VScroll1_Max(), 1);
    EXPECT_EQ(f.window.Row_Track(24), 24);
    f.window.setVScroll1(5);  // held to the end
    EXPECT_EQ(f.window.Row_Track(24), 25);
    EXPECT_EQ(f.window.Marker_Row(), -1);  // the first entry has scrolled away
    // Moving the marked entry down to the end keeps it in view.
    f.window.setVScroll1(0);
    f.window.Mark(24);
    f.window.CommandDown();
    EXPECT_EQ(f.window.VScroll1_Value(), 1);
    EXPECT_EQ(f.window.Marker_Row(), 24);
}

TEST(AlbumTagger, FailingTracksAreToldAndLeftAsTheyWereWhileTheRunGoesOn)
{
    AlbumFixture f;
    const QStringList paths = f.album(4);
    f.openAlbumOf(paths[0]);
    const FileState readOnly = stateOf(paths[1]);
    QFile::setPermissions(paths[1], QFile::ReadOwner | QFile::ReadGroup);
    QFile::remove(paths[2]);  // gone between opening and writing
    const TrackRow goneRow = f.lib.MP3_List.row(f.rowOf(paths[2]));
    f.window.TextAlbum = "New Album";
    const QString longTitle(10000, QLatin1Char('t'));
    f.window.setTitle(3, longTitle);

    EXPECT_EQ(f.window.Write_Album(), 2);
    ASSERT_EQ(f.ui.messages.size(), 2u);
    for (int i : {1, 2}) {
        const auto& m = f.ui.messages[size_t(i - 1)];
        EXPECT_EQ(m.title, "Tag update error");
        EXPECT_EQ(m.text, "An error occured whilst trying updating " + paths[i] + ", changes are discarded");
    }
    EXPECT_EQ(f.labels.size(), 4);
    EXPECT_EQ(stateOf(paths[1]), readOnly);
    EXPECT_FALSE(QFile::exists(paths[2]));
    EXPECT_EQ(f.lib.MP3_List.row(f.rowOf(paths[2])), goneRow);
    EXPECT_EQ(f.lib.MP3_List.field(f.rowOf(paths[1]), ColAlbum), "Alb");
    EXPECT_EQ(f.readBack(paths[3]).Tag2_Fields.Title, longTitle);
    EXPECT_EQ(f.readBack(paths[3]).Tag1_Record.Title.text(), longTitle.left(30));
    for (int i : {0, 3}) {
        EXPECT_EQ(f.readBack(paths[i]).Tag2_Fields.Album, "New Album");
        EXPECT_EQ(f.lib.MP3_List.field(f.rowOf(paths[i]), ColAlbum), "New Album");
    }
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_TRUE(f.temps().isEmpty());
}

TEST(AlbumTagger, CoverFromATrackOrABrowsedFileAndNoneFromAFileThatIsNoPicture)
{
    struct Case {
        const char* name;
        int comboEntry;        // picked in ComboCover
        QByteArray browsed;    // the file the dialog gives, if any
        QByteArray expected;   // every track's cover afterwards; empty: each keeps its own
        const char* told;
    };
    const QByteArray other = QByteArray("\xFF\xD8\xFF\xDB", 4) + QByteArray(100, 'o');
    const Case cases[] = {
        {"track", 2, {}, kPicture, ""},
        {"browsed", 0, other, other, ""},
        {"not a picture", 0, "<html>no picture</html>", {}, "Cover"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        AlbumFixture f;
        const QStringList paths = f.album(3, apicFrame("image/jpeg", 3, kPicture));
        f.openAlbumOf(paths[0]);
        EXPECT_EQ(f.window.ComboCover(),
                  QStringList({"Browse Cover", "Track 01 Cover", "Track 02 Cover", "Track 03 Cover"}));
        EXPECT_EQ(f.window.TagCover(), "");
        EXPECT_FALSE(f.window.ComboCover_Click(1));  // track 01 has no picture
        EXPECT_EQ(f.window.TagCover(), "");
        const QString file = f.env.path("pics/front.JPG");
        if (!k.browsed.isEmpty()) {
            writeFile(file, k.browsed);
            f.ui.dialogResults.push_back(file);
        }
        EXPECT_EQ(f.window.ComboCover_Click(k.comboEntry), !k.expected.isEmpty());
        EXPECT_EQ(f.window.TagCover().isEmpty(), k.expected.isEmpty());
        if (!k.expected.isEmpty()) {
            EXPECT_EQ(readFile(f.window.TagCover()), k.expected);
        }
        EXPECT_EQ(f.ui.titles().join(""), k.told);
        if (!k.browsed.isEmpty()) {
            EXPECT_EQ(f.ui.fileDialogs.at(0).filterDescription, "JPEG Image Files (*.jpg)");
            EXPECT_EQ(f.app.settings.GetSetting("Folders", "Art", ""), f.env.path("pics"));
        }
        f.ui.messages.clear();
        EXPECT_EQ(f.window.Write_Album(), 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(f.coverOf(paths[i]), k.expected.isEmpty() && i == 1 ? kPicture : k.expected) << i;
    }
}
