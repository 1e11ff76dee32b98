// The filename tagger on real LAME files: word runs, the tagger's read of a
// tag, the three write options with the library following, stepping.
#include <QFile>
#include <gtest/gtest.h>

#include "shell/settings_families.h"
#include "tagedit/filename_tagger.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tests/library/library_fixture.h"
#include "tests/support/tagged_mp3.h"

namespace sonorit::test {
namespace {

TEST(FilenameWordRuns, RunsOfTheNamesWords)
{
    const struct {
        const char* name;
        QStringList runs;
    } cases[] = {
        {"Single.mp3", {"Single"}},
        {"a__b.mp3", {"a", "a b", "b"}},
        {"a - b.mp3", {"a", "a b", "b"}},
        {"Pink%20Floyd.mp3", {"Pink", "Pink Floyd", "Floyd"}},
        {"Time%.mp3", {"Time"}},
        {"  x_-_y  .mp3", {"x", "x y", "y"}},
        {"abc", {}},
        {"___.mp3", {}},
        {"a b c d e.mp3",
         {"a", "a b", "a b c", "a b c d", "a b c d e", "b", "b c", "b c d", "b c d e", "c", "c d", "c d e", "d",
          "d e", "e"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Filename_Word_Runs(c.name), c.runs) << c.name;
}

struct FilenameTaggerTest : ::testing::Test {
    LibraryFixture f;
    TagState tags{f.app.Data_Folder()};
    TagEditContext c{f.app, f.lib, f.ui, tags, nullptr, {}};
    FilenameTagger tagger{c};
    QString music = f.env.path("Music/");

    void SetUp() override
    {
        ASSERT_FALSE(Get_Tag_Settings(f.app).has_value());
        QDir().mkpath(f.app.Data_Folder());
    }
    // Tracks in the library, one row each, in this order.
    void library(const std::vector<std::pair<QString, TrackTags>>& tracks)
    {
        for (const auto& [name, t] : tracks) {
            ASSERT_TRUE(writeTaggedMp3(music + name, t));
            f.maker.track(makeTrack(t.artist, t.title, f.env.path("Music"), name, t.album));
        }
        ASSERT_TRUE(f.open());
    }
    TagState readBack(const QString& path)
    {
        TagState s(f.env.path("readback/"));
        Read_Tag2(s, path, Tag2Mode::Panel);
        Read_Tag1(s, path, f.ui);
        return s;
    }
};

TEST_F(FilenameTaggerTest, ReadCopyCutsLongTrackAndYearAndOffersTheStamp)
{
    library({{"Beatles - Help.mp3", {"", "Help!", "3/12", "", "19655", "(17)", true}}});
    ASSERT_TRUE(tagger.Load_Library_Row(0));
    const FilenameTagForm& form = tagger.form;
    EXPECT_EQ(form.FilenameText, "Beatles - Help");
    EXPECT_EQ(form.Word_Runs, QStringList({"Beatles", "Beatles Help", "Help"}));
    EXPECT_EQ(form.FT_Tag2_Combo_Artist, "");  // the tag has none
    EXPECT_EQ(form.FT_Tag2_Combo_Album, "Help!");
    EXPECT_EQ(form.FT_Tag2_Text_Track, "00");
    EXPECT_EQ(form.FT_Tag2_Text_Year, "0000");
    EXPECT_TRUE(form.FT_Tag2_VA);
    EXPECT_EQ(form.FT_Tag2_Combo_Genre, 17);
    EXPECT_EQ(form.FT_Tag2_Text_Genre, "Rock");
    EXPECT_FALSE(form.FT_Tag2_Text_Genre_Enabled);
    EXPECT_EQ(form.FT_Tag2_Text_Comment, TagStamp());

    // No cover in the tag: every choice shows the default picture; a chosen
    // file shows once the cycle reaches it again.
    EXPECT_EQ(tags.FT_Tag2_Fields.FT_Cover_Choice, 0);
    const QString jpeg = f.env.path("front.jpg");
    writeFile(jpeg, "\xFF\xD8\xFF\xE0 not much of a picture");
    writeFile(f.env.path("fake.jpg"), "GIF89a");
    EXPECT_FALSE(tagger.Choose_Cover(f.env.path("fake.jpg")));
    EXPECT_EQ(f.ui.titles(), QStringList({"Cover"}));
    EXPECT_TRUE(tagger.Choose_Cover(jpeg));
    QStringList shown;
    for (int i = 0; i < 4; ++i) {
        shown << QString::number(tags.FT_Tag2_Fields.FT_Cover_Choice) + ":" + tagger.Load_FT_Cover();
        tagger.Cover_Click();
    }
    EXPECT_EQ(shown, QStringList({"2:" + jpeg, "0:", "1:", "2:" + jpeg}));

    // The genre combo: a name closes the box, entry 149 opens it empty.
    EXPECT_EQ(tagger.Genre_Click(148), FtFocus::Comment);
    EXPECT_EQ(form.FT_Tag2_Text_Genre, "Unknown");
    EXPECT_EQ(tagger.Genre_Click(149), FtFocus::GenreText);
    EXPECT_TRUE(form.FT_Tag2_Text_Genre_Enabled);
    EXPECT_EQ(form.FT_Tag2_Text_Genre, "");
    EXPECT_EQ(Filename_Genre_Names()[149], "User defined");
    EXPECT_EQ(FilenameTagger::Digits_Typed("2a0x07", 4), "2007");
}

TEST_F(FilenameTaggerTest, WriteOptionsTouchOnlyTheirTags)
{
    const TrackTags old{"Old Artist", "Old Album", "05", "Old Title", "1999", "Pop", false};
    const std::vector<FtOption> options{FtOption::Tag1Only, FtOption::Tag2Only, FtOption::Both};
    std::vector<std::pair<QString, TrackTags>> tracks;
    for (size_t i = 0; i < options.size(); ++i)
        tracks.push_back({QStringLiteral("Moby - Porcelain %1.mp3").arg(i), old});
    library(tracks);
    for (int i = 0; i < int(options.size()); ++i) {
        const FtOption option = options[size_t(i)];
        SCOPED_TRACE(i);
        const QString path = music + tracks[size_t(i)].first;
        const QByteArray before = readFile(path);
        const TrackRow rowBefore = f.lib.MP3_List.row(i);

        ASSERT_TRUE(tagger.Load_Library_Row(i));
        tagger.form.FT_Option1 = option;
        tagger.form.FT_Tag2_Combo_Artist = tagger.form.Word_Runs[0];  // "Moby"
        tagger.form.FT_Tag2_Combo_Title = " Porcelain ";
        tagger.form.FT_Tag2_Text_Track = "7";
        tagger.Genre_Click(17);
        EXPECT_TRUE(tagger.Write_Tag());
        EXPECT_TRUE(f.ui.messages.empty());
        EXPECT_FALSE(QFile::exists(f.app.Data_Folder() + "Temp.mp3"));

        const QByteArray after = readFile(path);
        const TagState s = readBack(path);
        const TrackRow row = f.lib.MP3_List.row(i);
        EXPECT_EQ(row[ColFilelength], QString::number(after.size()));
        if (option == FtOption::Tag1Only) {
            // The ID3v2 tag and the audio stay byte for byte; a tag of 128 bytes is added.
            EXPECT_EQ(after.left(before.size()), before);
            EXPECT_EQ(after.size(), before.size() + 128);
            for (int col : {ColArtist, ColAlbum, ColTrack, ColTitle, ColTime, ColYear, ColGenre, ColVA})
                EXPECT_EQ(row[col], rowBefore[col]) << col;
        } else {
            EXPECT_EQ(s.Tag2_Fields.Artist, "Moby");
            EXPECT_EQ(s.Tag2_Fields.Title, "Porcelain");
            EXPECT_EQ(s.Tag2_Fields.Album, "Old Album");
            EXPECT_EQ(s.Tag2_Fields.Track, "07");
            EXPECT_EQ(s.Tag2_Fields.Comment, TagStamp());
            EXPECT_EQ(s.Tag2_Panel.Tag2_Combo_Genre, 17);
            EXPECT_FALSE(s.Tag2_Fields.Length.isEmpty());
            EXPECT_EQ((QStringList{row[ColArtist], row[ColTitle], row[ColTrack], row[ColGenre], row[ColVA]}),
                      QStringList({"Moby", "Porcelain", "07", "Rock", "No"}));
            EXPECT_EQ(row[ColTime], s.Tag2_Panel.Tag2_Text_Time);
        }
        const bool tag1 = option != FtOption::Tag2Only;
        EXPECT_EQ(after.right(128).startsWith("TAG"), tag1);
        if (tag1) {
            EXPECT_EQ(s.Tag1_Record.Artist.text().trimmed(), "Moby");
            EXPECT_EQ(s.Tag1_Record.Track, 7);
            EXPECT_EQ(s.Tag1_Record.Genre, 17);
        }
        // The Trackfile holds the row as the list shows it.
        EXPECT_TRUE(f.trackfile().contains(recordText(row))) << f.trackfile().toStdString();
    }
}

TEST_F(FilenameTaggerTest, CoverAndLongTitleComeBackFromTheFile)
{
    library({{"Long.mp3", {"A", "Al", "", "T", "", "", false}}});
    const QString path = music + "Long.mp3";
    const QByteArray picture = QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(5000, 'p');
    writeFile(f.env.path("front.jpg"), picture);
    ASSERT_TRUE(tagger.Load_Library_Row(0));
    ASSERT_TRUE(tagger.Choose_Cover(f.env.path("front.jpg")));
    tagger.form.FT_Tag2_Combo_Title = QString(10000, 'x');
    ASSERT_TRUE(tagger.Write_Tag());
    EXPECT_EQ(readBack(path).Tag2_Fields.Title.size(), 10000);
    EXPECT_EQ(readBack(path).Tag1_Record.Title.text(), QString(30, 'x'));
    EXPECT_EQ(f.lib.MP3_List.field(0, ColTitle).size(), 10000);

    // The next load takes the tag's cover to "FT_Cover.jpg" and shows it;
    // clicked on to "no cover" and written, the picture is gone.
    ASSERT_TRUE(tagger.Load_Library_Row(0));
    EXPECT_EQ(tags.FT_Tag2_Fields.FT_Cover_Choice, 1);
    EXPECT_EQ(tagger.Load_FT_Cover(), f.app.Data_Folder() + "FT_Cover.jpg");
    EXPECT_EQ(readFile(tagger.Load_FT_Cover()), picture);
    tagger.Cover_Click();
    tagger.Cover_Click();
    EXPECT_EQ(tagger.Load_FT_Cover(), "");
    ASSERT_TRUE(tagger.Write_Tag());
    ASSERT_TRUE(tagger.Load_Library_Row(0));
    EXPECT_EQ(tags.FT_Tag2_Fields.FT_Cover_Choice, 0);
    EXPECT_FALSE(QFile::exists(f.app.Data_Folder() + "FT_Cover.jpg"));
}

TEST_F(FilenameTaggerTest, FailedWritesLeaveTheFileAsItWas)
{
    library({{"A - B.mp3", {"A", "Al", "", "B", "", "", false}}, {"C - D.mp3", {"C", "Al", "", "D", "", "", false}}});
    const QString readOnly = music + "A - B.mp3";
    const QByteArray bytes = readFile(readOnly);
    QFile::setPermissions(readOnly, QFileDevice::ReadOwner);
    ASSERT_TRUE(tagger.Load_Library_Row(0));
    tagger.form.FT_Option1 = FtOption::Both;
    EXPECT_FALSE(tagger.Write_Tag());
    EXPECT_EQ(readFile(readOnly), bytes);
    EXPECT_TRUE(f.ui.titles().contains("Tag Save Failure"));
    EXPECT_TRUE(f.ui.titles().contains("Tag update error"));
    EXPECT_EQ(f.lib.MP3_List.field(0, ColArtist), "A");

    // Deleted between loading and writing: told, and nothing is made.
    f.ui.messages.clear();
    ASSERT_TRUE(tagger.Load_Library_Row(1));
    QFile::remove(music + "C - D.mp3");
    tagger.form.FT_Option1 = FtOption::Tag2Only;
    EXPECT_FALSE(tagger.Write_Tag());
    EXPECT_EQ(f.ui.titles(), QStringList({"Tag update error"}));
    EXPECT_FALSE(QFile::exists(music + "C - D.mp3"));
    EXPECT_EQ(f.lib.MP3_List.field(1, ColArtist), "C");
}

TEST_F(FilenameTaggerTest, AutoSelectStepsOnAndStaysOnTheLastTrack)
{
    library({{"One - A.mp3", {"", "", "", "", "", "", false}}, {"Two - B.mp3", {"", "", "", "", "", "", false}}});
    tagger.form.FT_Check_Autoselect = true;
    tagger.form.FT_Option1 = FtOption::Tag2Only;
    ASSERT_TRUE(tagger.Load_Library_Row(0));
    ASSERT_TRUE(tagger.Write_Tag());
    EXPECT_EQ(tagger.File_Name, "Two - B.mp3");
    EXPECT_EQ(f.lib.MP3_List.selected(), 1);
    EXPECT_EQ(tagger.focus, FtFocus::Artist);
    ASSERT_TRUE(tagger.Write_Tag());
    EXPECT_EQ(tagger.File_Name, "Two - B.mp3");
    EXPECT_EQ(tagger.List_Index, 1);
    tagger.Step(-1);
    EXPECT_EQ(tagger.File_Name, "One - A.mp3");
    tagger.Step(-1);
    EXPECT_EQ(tagger.File_Name, "One - A.mp3");
}

TEST_F(FilenameTaggerTest, FolderChoiceStepsThroughItsSortedTracks)
{
    const QString empty = f.env.path("Empty");
    QDir().mkpath(empty);
    writeFile(empty + "/notes.txt", "x");
    f.ui.dialogResults = {empty};
    tagger.Choose_Folder();
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0].text, "There are no mp3-tracks in this folder!");
    EXPECT_EQ(f.ui.messages[0].title, "File error");
    EXPECT_TRUE(tagger.File_Name.isEmpty());

    const QString folder = f.env.path("Names");
    QDir().mkpath(folder);
    for (const char* name : {"b_two.mp3", "a_one.MP3", "c_three.mp3"})
        ASSERT_TRUE(writeMp3(folder + "/" + name));
    f.ui.dialogResults = {folder};
    tagger.Choose_Folder();
    EXPECT_FALSE(tagger.From_Library);
    EXPECT_EQ(tagger.File_Name, "a_one.MP3");
    EXPECT_EQ(tagger.focus, FtFocus::Artist);
    tagger.form.FT_Check_Autoselect = true;
    QStringList visited{tagger.File_Name};
    for (int i = 0; i < 3; ++i) {
        tagger.form.FT_Tag2_Combo_Title = tagger.form.Word_Runs.last();
        ASSERT_TRUE(tagger.Write_Tag());
        visited << tagger.File_Name;
    }
    EXPECT_EQ(visited, QStringList({"a_one.MP3", "b_two.mp3", "c_three.mp3", "c_three.mp3"}));
    EXPECT_EQ(readBack(folder + "/b_two.mp3").Tag2_Fields.Title, "two");
}

}  // namespace
}  // namespace sonorit::test
