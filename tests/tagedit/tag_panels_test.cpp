// The tag panels over real files in an open library: what a selection shows,
// what typing keeps, what the two write buttons store and what follows them,
// and the files left whole when a write cannot be done.
#include <gtest/gtest.h>

#include <QFile>

#include "playback/playback_state.h"
#include "tagedit/panel_writes.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tagedit_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct PanelFixture : TagEditFixture {
    PlaybackState play;
    TagPanels panels;
    QStringList focus;
    PanelContext p{edit, panels, {}, [this](PanelFocus f) { focus << QString::number(int(f)); }};

    PanelFixture()
    {
        edit.play = &play;
        fill({{"Art/Alb/1.mp3", test::tags("Art", "Alb", "1", "Song 1")},
              {"Art/Alb/2.mp3", test::tags("Art", "Alb", "2", "Song 2")}});
        lib.MP3_List.select(0);
    }
    void addToPlaylist(const QString& path)
    {
        play.Play_File << path;
        play.Play_List.append(PlayRow{"a", "b", "c", "00:01"});
        ++play.PlayList_Count;
    }
    QStringList messages() const
    {
        QStringList out;
        for (const auto& m : ui.messages)
            out << m.title + ": " + m.text;
        return out;
    }
};

// A real JPEG is not needed by the tag engine: the start of one and filler.
QByteArray jpegBytes(int size)
{
    QByteArray bytes("\xFF\xD8\xFF\xE0", 4);
    bytes += QByteArray(size - 6, 'j');
    bytes += QByteArray("\xFF\xD9", 2);
    return bytes;
}

}  // namespace

TEST(TagPanels, TypingKeepsLimitsAndDigits)
{
    const QString longText(40, 'x');
    struct Case {
        PanelBox box;
        QString typed, kept;
    } cases[] = {
        {PanelBox::Tag1_Text_Artist, longText, QString(30, 'x')},
        {PanelBox::Tag1_Text_Comment, longText, QString(28, 'x')},
        {PanelBox::Tag1_Text_Track, "1a2b3", "12"},
        {PanelBox::Tag1_Text_Year, "19-9 9x", "1999"},
        {PanelBox::Tag2_Text_Track, "3/12", "31"},
        {PanelBox::Tag2_Text_Year, "\t2024", "\t202"},  // a control character passes and counts
        {PanelBox::Tag2_Text_Title, QString(10000, 't'), QString(10000, 't')},
        {PanelBox::Tag2_Text_Genre, "Minimal Techno & Friends", "Minimal Techno & Friends"},
    };
    for (const Case& c : cases) {
        TagPanels panels;
        panels.Type_Into(c.box, c.typed);
        EXPECT_EQ(panels.box(c.box), c.kept) << c.typed.left(20).toStdString();
    }
}

TEST(TagPanels, SelectionShowsBothTagsTheAudioAndTheStamp)
{
    PanelFixture f;
    int followed = -1;
    f.edit.filenameTaggerFollow = [&](const QString&, int row) { followed = row; };
    ASSERT_TRUE(Select_Library_Row(f.p, 1));
    EXPECT_EQ(f.panels.Tag_Shown_Path, f.pathOf(1));
    EXPECT_EQ(f.panels.Tag2_Text_Title, "Song 2");
    EXPECT_EQ(f.panels.Tag2_Text_Genre, "Pop");
    EXPECT_EQ(f.panels.Tag2_Text_Comment, TagStamp());  // the file has no comment
    EXPECT_EQ(f.panels.Tag1_Text_Track, "00");           // no v1 tag: a blank record
    EXPECT_EQ(f.panels.Mpeg.labLayer, "Mpeg: MPEG 1.0 Layer 3");
    EXPECT_EQ(followed, 1);

    // A file gone since the list was read: named, and the panels stay.
    QFile::remove(f.pathOf(0));
    EXPECT_FALSE(Select_Library_Row(f.p, 0));
    EXPECT_EQ(f.messages(), QStringList{"File not found: " + f.pathOf(0)});
    EXPECT_EQ(f.panels.Tag_Shown_Path, f.pathOf(1));
    EXPECT_FALSE(QFile::exists(f.pathOf(0)));
}

TEST(TagPanels, WriteTag2StoresThePanelAndTheLibraryFollows)
{
    struct Case {
        QString track, comment, title;
        int va;
        QString storedTrack, storedComment;
    } cases[] = {
        {"7", "hello", "New", 0, "07", "hello"},
        {"3/12", "", "Other", 1, "00", TagStamp()},  // a foreign track text is no number
        {"", "  ", QString(10000, 'T'), 0, "", TagStamp()},
    };
    for (const Case& c : cases) {
        PanelFixture f;
        f.addToPlaylist(f.pathOf(0));
        ASSERT_TRUE(Select_Library_Row(f.p, 0));
        f.panels.Tag2_Text_Track = c.track;  // as read from a foreign tag, past the box's limit
        f.panels.Tag2_Text_Comment = c.comment;
        f.panels.Tag2_Text_Title = c.title;
        f.panels.Tag2_Combo_VA = c.va;
        EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::Written);
        EXPECT_TRUE(f.ui.messages.empty()) << f.messages().join('\n').toStdString();

        const TagState s = f.readBack(f.pathOf(0));
        EXPECT_EQ(s.Tag2_Fields.Title, c.title);
        EXPECT_EQ(s.Tag2_Fields.Track, c.storedTrack);
        EXPECT_EQ(s.Tag2_Fields.Comment, c.storedComment);
        EXPECT_EQ(s.Tag2_Fields.VA, c.va ? "Various Artists" : "");
        EXPECT_EQ(f.panels.Tag2_Text_Title, c.title);  // read again from the file
        EXPECT_EQ(f.lib.MP3_List.field(0, ColTitle), c.title);
        EXPECT_EQ(f.lib.MP3_List.field(0, ColTrack), c.storedTrack);
        EXPECT_EQ(f.lib.MP3_List.field(0, ColVA), c.va ? "Yes" : "No");
        EXPECT_EQ(f.lib.MP3_List.field(0, ColTime), "00:01");  // TLEN, stored by the write
        EXPECT_EQ(s.Tag2_Fields.Length, "1071");
        EXPECT_EQ(f.lib.MP3_List.field(0, ColFilelength), QString::number(QFileInfo(f.pathOf(0)).size()));
        EXPECT_TRUE(f.recordsMatchList());
        EXPECT_EQ(f.play.Play_List.field(0, PlayTitle), c.title);
        EXPECT_TRUE(f.temps().isEmpty());
    }
}

TEST(TagPanels, WriteKeepsTheLengthOfTheFileItWrites)
{
    // One track of one second, one of two; another routine reads the longer
    // one into the shared tag state after the panels loaded the shorter.
    PanelFixture f;
    writeTaggedMp3(f.pathOf(1), test::tags("Art", "Alb", "2", "Song 2"), Mp3Recipe{2.0});
    ASSERT_TRUE(Select_Library_Row(f.p, 0));
    Read_Tag2(f.tags, f.pathOf(1), Tag2Mode::Panel);
    Show_Mpeg_Info(f.tags, f.pathOf(1));
    EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::Written);
    EXPECT_EQ(f.readBack(f.pathOf(0)).Tag2_Fields.Length, "1071");

    // The selection moved without a load: the panels go to the selected
    // file, with that file's own length.
    f.lib.MP3_List.select(1);
    EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::Written);
    const TagState s = f.readBack(f.pathOf(1));
    EXPECT_EQ(s.Tag2_Fields.Title, "Song 1");
    EXPECT_EQ(s.Tag2_Fields.Length, "2063");
}

TEST(TagPanels, WriteTag1StoresTheRecordAndOnlyDateAndSizeFollow)
{
    PanelFixture f;
    ASSERT_TRUE(Select_Library_Row(f.p, 0));
    f.panels.Type_Into(PanelBox::Tag1_Text_Artist, "  Somebody  ");
    f.panels.Type_Into(PanelBox::Tag1_Text_Track, "9");
    f.panels.Type_Into(PanelBox::Tag1_Text_Year, "1984");
    f.panels.Tag1_Combo_Genre = 17;
    EXPECT_EQ(Command_Write_Tag1(f.p), WriteOutcome::Written);
    EXPECT_EQ(f.focus, QStringList{QString::number(int(PanelFocus::Library_List))});
    const TagState s = f.readBack(f.pathOf(0));
    EXPECT_EQ(s.Tag1_Record.Artist.text(), QString("Somebody").leftJustified(30));
    EXPECT_EQ(s.Tag1_Record.Track, 9);
    EXPECT_EQ(s.Tag1_Record.Genre, 17);
    EXPECT_EQ(f.lib.MP3_List.field(0, ColArtist), "Art");  // the list shows the v2 tag
    EXPECT_EQ(f.lib.MP3_List.field(0, ColFilelength), QString::number(QFileInfo(f.pathOf(0)).size()));
    EXPECT_TRUE(f.recordsMatchList());

    // Nothing selected: the list gets the focus and nothing is written.
    f.lib.MP3_List.select(-1);
    f.focus.clear();
    EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::NothingSelected);
    EXPECT_EQ(f.focus, QStringList{QString::number(int(PanelFocus::Library_List))});
}

TEST(TagPanels, FailedWritesLeaveTheFileAsItWas)
{
    // A read-only file, then a file deleted between selection and write.
    for (bool deleted : {false, true}) {
        PanelFixture f;
        ASSERT_TRUE(Select_Library_Row(f.p, 0));
        const QString path = f.pathOf(0);
        const QByteArray before = readFile(path);
        const TrackRow row = f.lib.MP3_List.row(0);
        if (deleted)
            QFile::remove(path);
        else
            QFile::setPermissions(path, QFileDevice::ReadOwner);
        f.ui.messages.clear();
        f.panels.Tag2_Text_Title = "Changed";
        f.panels.Tag1_Text_Title = "Changed";
        EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::Failed);
        EXPECT_EQ(Command_Write_Tag1(f.p), WriteOutcome::Failed);
        const QStringList seen = f.messages();
        if (deleted) {
            EXPECT_EQ(seen, QStringList({"File not found: " + path, "File not found: " + path,
                                         "Tag Save Failure: MP3 tag v1.1 could not been saved"}));
            EXPECT_FALSE(QFile::exists(path));  // no empty file in its place
        } else {
            EXPECT_TRUE(seen.contains("Tag update error: An error occured whilst trying updating Tag3v2, changes are "
                                      "discarded"))
                << seen.join('\n').toStdString();
            EXPECT_TRUE(seen.contains("Tag Save Failure: MP3 tag v1.1 could not been saved"));
            EXPECT_EQ(readFile(path), before);
            EXPECT_EQ(f.panels.Tag2_Text_Title, "Song 1");  // shown again as the file is
        }
        EXPECT_EQ(f.lib.MP3_List.row(0), row);
        EXPECT_TRUE(f.recordsMatchList());
        EXPECT_TRUE(f.temps().isEmpty());
    }
}

TEST(TagPanels, CopiesBetweenThePanelsFollowTheGenreRules)
{
    struct Case {
        int tag1Genre;
        int tag2GenreAfter;
        QString tag2TextAfter;
    } cases[] = {
        {17, 17, "Rock"},
        {12, 149, "My Own"},  // "Other" says nothing
        {148, 149, "My Own"},
        {149, 149, "My Own"},
    };
    for (const Case& c : cases) {
        TagPanels panels;
        panels.Tag1_Text_Artist = "  A  ";
        panels.Tag1_Text_Track = "07";
        panels.Tag1_Combo_Genre = c.tag1Genre;
        panels.Tag2_Combo_Genre = 149;
        panels.Tag2_Text_Genre = "My Own";
        panels.Tag2_Text_Genre_Enabled = true;
        CommandCopyTagv1(panels);
        EXPECT_EQ(panels.Tag2_Text_Artist, "A");
        EXPECT_EQ(panels.Tag2_Text_Track, "07");
        EXPECT_EQ(panels.Tag2_Combo_Genre, c.tag2GenreAfter) << c.tag1Genre;
        EXPECT_EQ(panels.Tag2_Text_Genre, c.tag2TextAfter) << c.tag1Genre;
    }

    TagPanels panels;
    panels.Tag1_Text_Comment = "kept";
    panels.Tag2_Text_Title = QString(40, 'x');
    panels.Tag2_Text_Track = "";
    panels.Tag2_Combo_Genre = 149;
    CommandCopyTagv2(panels);
    EXPECT_EQ(panels.Tag1_Text_Title, QString(30, 'x'));
    EXPECT_EQ(panels.Tag1_Text_Track, "");
    EXPECT_EQ(panels.Tag1_Combo_Genre, 149);
    EXPECT_EQ(panels.Tag1_Text_Comment, "kept");
    panels.Tag2_Text_Track = "5";
    CommandCopyTagv2(panels);
    EXPECT_EQ(panels.Tag1_Text_Track, "05");
}

TEST(TagPanels, GenreComboOpensTheBoxOnlyForUserDefined)
{
    PanelFixture f;
    Tag2_Combo_Genre_Click(f.p, 149);
    EXPECT_TRUE(f.panels.Tag2_Text_Genre_Enabled);
    EXPECT_EQ(f.panels.Tag2_Text_Genre, "");
    EXPECT_EQ(f.focus, QStringList{QString::number(int(PanelFocus::Tag2_Text_Genre))});
    Tag2_Combo_Genre_Click(f.p, 17);
    EXPECT_FALSE(f.panels.Tag2_Text_Genre_Enabled);
    EXPECT_EQ(f.panels.Tag2_Text_Genre, "Rock");
}

TEST(TagPanels, PlaylistEntriesLoadAndWriteExceptWavAndWma)
{
    PanelFixture f;
    const QString wav = f.env.path("Sound.WAV");
    writeFile(wav, "RIFF");
    f.addToPlaylist(f.pathOf(1));
    f.addToPlaylist(wav);
    ASSERT_TRUE(Select_Playlist_Entry(f.p, 1));
    EXPECT_EQ(f.panels.Tag_Source, 2);
    EXPECT_FALSE(Select_Playlist_Entry(f.p, 2));
    EXPECT_EQ(f.panels.Tag_Shown_Path, f.pathOf(1));  // the WAV loaded nothing

    // The selected playlist row decides; a WAV row writes nothing.
    f.play.Play_List.select(1);
    EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::NothingSelected);
    EXPECT_EQ(readFile(wav), "RIFF");
    f.play.Play_List.select(0);
    f.panels.Tag2_Text_Album = "From the list";
    EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::Written);
    EXPECT_EQ(f.lib.MP3_List.field(1, ColAlbum), "From the list");
    EXPECT_EQ(f.play.Play_List.field(0, PlayAlbum), "From the list");
    EXPECT_TRUE(f.recordsMatchList());
}

TEST(TagPanels, CoverDialogAndChosenPictures)
{
    PanelFixture f;
    f.app.Tag_Options[TagOption::CoverPicture] = true;
    ASSERT_TRUE(Select_Library_Row(f.p, 0));
    const QString pictures = f.env.path("Pictures");
    QDir().mkpath(pictures);
    const QString big = pictures + "/big.JPG";
    const QString fake = pictures + "/fake.jpg";
    writeFile(big, jpegBytes(5 * 1024 * 1024));
    writeFile(fake, "<html>not a picture</html>");

    // The dialog; a file of another kind is no choice.
    f.app.Art_Folder = pictures;
    f.ui.dialogResults = {pictures + "/none.png", big};
    EXPECT_EQ(Choose_Cover_File(f.edit), "");
    EXPECT_EQ(Choose_Cover_File(f.edit), big);
    ASSERT_EQ(f.ui.fileDialogs.size(), 2u);
    EXPECT_EQ(f.ui.fileDialogs[0].title, "Open");
    EXPECT_EQ(f.ui.fileDialogs[0].filterDescription, "JPEG Image Files (*.jpg)");
    EXPECT_EQ(f.ui.fileDialogs[0].startFolder, pictures);
    EXPECT_EQ(f.app.settings.GetSetting("Folders", "Art", ""), pictures);

    // A .jpg that holds no picture is refused; the cover shown stays.
    EXPECT_FALSE(Take_Cover_File(f.p, fake));
    EXPECT_EQ(f.messages(),
              QStringList{"Cover: This file is not a JPEG picture and was not taken as the cover:\n" + fake});
    EXPECT_EQ(f.panels.Cover_Tag, "");

    // A 5 MB picture goes into the tag whole.
    ASSERT_TRUE(Take_Cover_File(f.p, big));
    EXPECT_EQ(f.panels.Cover_Tag, f.tags.coverPath());
    EXPECT_EQ(Command_Write_Tag2(f.p), WriteOutcome::Written);
    EXPECT_EQ(readFile(f.tags.coverPath()), readFile(big));  // extracted again by the reread
    EXPECT_EQ(f.panels.Cover_Tag, f.tags.coverPath());

    // A chosen picture is forgotten when another track is picked.
    ASSERT_TRUE(Take_Cover_File(f.p, big));
    ASSERT_TRUE(Select_Library_Row(f.p, 1));
    EXPECT_EQ(f.panels.Cover_Tag, "");
    EXPECT_FALSE(f.tags.Cover_Changed);
}
