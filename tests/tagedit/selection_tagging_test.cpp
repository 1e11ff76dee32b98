// Selection tagging over real files: the questions and their input rules,
// both tags written for every selected row, the library following.
#include <gtest/gtest.h>

#include <QFile>

#include "tagedit/selection_tagging.h"
#include "tagedit_fixture.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct SelectionFixture : TagEditFixture {
    TagPanels panels;
    PanelContext p{edit, panels, {}, {}};
    QStringList paths;

    // Two tracks of one album, both selected.
    SelectionFixture()
    {
        fill({{"Art/Alb/1.mp3", test::tags("Art", "Alb", "1", "Song 1")},
              {"Art/Alb/2.mp3", test::tags("Art", "Alb", "2", "Song 2")}});
        lib.MP3_List.setSelection({0, 1}, 0);
        paths = {pathOf(0), pathOf(1)};
    }
    TagState v2(int row) const { return readBack(pathOf(row)); }
    Tag1Record v1(int row) const { return readBack(pathOf(row)).Tag1_Record; }
    std::vector<FileState> files() const { return {stateOf(paths[0]), stateOf(paths[1])}; }
};

}  // namespace

TEST(SelectionTagging, TextFieldsReachBothTagsOfEveryRow)
{
    struct Case {
        const char* name;
        int (*command)(PanelContext&);
        QStringList inputs;
        QString prompts;
        int column;
        QString written;
    } cases[] = {
        {"artist", &mnu_Tag_sel_Artist, {" New Artist "}, "Please fill in the name of the artist|Tag Artist|",
         ColArtist, "New Artist"},
        {"album", &mnu_Tag_sel_Album, {"Other"}, "Please fill in the name of the album|Tag Album|", ColAlbum, "Other"},
        {"year asked again", &mnu_Tag_sel_Year, {"19a9", "99", "1999"},
         "Please fill in the year of the album|Tag Year|", ColYear, "1999"},
    };
    for (const Case& c : cases) {
        SelectionFixture f;
        f.ui.inputs = {c.inputs.begin(), c.inputs.end()};
        c.command(f.p);
        EXPECT_EQ(f.ui.inputPrompts, QStringList(QList<QString>(c.inputs.size(), c.prompts))) << c.name;
        EXPECT_TRUE(f.ui.messages.empty()) << c.name;
        for (int row : {0, 1}) {
            EXPECT_EQ(f.lib.MP3_List.field(row, c.column), c.written) << c.name;
            const TagState t = f.v2(row);
            const QString v2 = c.column == ColArtist ? t.Tag2_Fields.Artist
                               : c.column == ColAlbum ? t.Tag2_Fields.Album
                                                      : t.Tag2_Fields.Year;
            EXPECT_EQ(v2, c.written) << c.name;
            const Tag1Record r = f.v1(row);
            const QString v1 = c.column == ColArtist ? r.Artist.text()
                               : c.column == ColAlbum ? r.Album.text()
                                                      : r.Year.text();
            EXPECT_EQ(v1.trimmed(), c.written) << c.name;
            EXPECT_EQ(t.Tag2_Fields.Title, QString("Song %1").arg(row + 1)) << c.name;
        }
        EXPECT_TRUE(f.recordsMatchList()) << c.name;
        EXPECT_FALSE(f.ui.locked) << c.name;
    }
}

TEST(SelectionTagging, NoValueChangesNothing)
{
    struct Case {
        const char* name;
        std::function<void(SelectionFixture&)> run;
    } cases[] = {
        {"empty artist", [](SelectionFixture& f) { mnu_Tag_sel_Artist(f.p); }},
        {"bad year, then empty", [](SelectionFixture& f) {
             f.ui.inputs = {"19a9", ""};
             mnu_Tag_sel_Year(f.p);
             EXPECT_EQ(f.ui.inputPrompts.size(), 2);
         }},
        {"genre cancelled", [](SelectionFixture& f) { mnu_Tag_sel_Genre(f.p, [] { return QString("Cancel"); }); }},
        {"cover dialog cancelled", [](SelectionFixture& f) { mnu_Tag_sel_Cover(f.p); }},
    };
    for (const Case& c : cases) {
        SelectionFixture f;
        const auto before = f.files();
        const QByteArray records = f.trackfile();
        c.run(f);
        EXPECT_EQ(f.files(), before) << c.name;
        EXPECT_EQ(f.trackfile(), records) << c.name;
        EXPECT_TRUE(f.ui.messages.empty()) << c.name;
    }
}

TEST(SelectionTagging, GenreAndVariousArtists)
{
    SelectionFixture f;
    mnu_Tag_sel_Genre(f.p, [] { return Genre_Answer(17, "Rock"); });
    EXPECT_EQ(Genre_Answer(17, "Rock"), "017Rock");
    for (int row : {0, 1}) {
        EXPECT_EQ(f.v2(row).Tag2_Panel.Tag2_Combo_Genre, 17);
        EXPECT_EQ(f.v1(row).Genre, 17);
        EXPECT_EQ(f.lib.MP3_List.field(row, ColGenre), "Rock");
    }
    // A user-defined genre keeps its text; the v1.1 genre stays.
    mnu_Tag_sel_Genre(f.p, [] { return Genre_Answer(149, "Mine"); });
    EXPECT_EQ(f.v2(0).Tag2_Panel.Tag2_Text_Genre, "Mine");
    EXPECT_EQ(f.v1(0).Genre, 17);

    // Various artists on: TPE2 in each file, which keeps its name and place.
    mnu_Tag_sel_VA_On(f.p);
    for (int row : {0, 1}) {
        EXPECT_EQ(f.pathOf(row), f.paths[row]);
        EXPECT_TRUE(QFile::exists(f.paths[row]));
        EXPECT_EQ(f.v2(row).Tag2_Fields.VA, "Various Artists");
        EXPECT_EQ(f.lib.MP3_List.field(row, ColVA), "Yes");
    }
    mnu_Tag_sel_VA_Off(f.p);
    EXPECT_EQ(f.v2(1).Tag2_Fields.VA, "");
    EXPECT_EQ(f.lib.MP3_List.field(1, ColVA), "No");
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_TRUE(f.ui.messages.empty());
}

TEST(SelectionTagging, CoverFromTheJpegDialog)
{
    SelectionFixture f;
    const QByteArray jpeg = QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(64, 'j') + QByteArray("\xFF\xD9", 2);
    writeFile(f.env.path("Pics/front.jpg"), jpeg);
    writeFile(f.env.path("Pics/text.jpg"), "not a picture");

    // A .jpg that is no picture: told once, nothing written.
    const auto before = f.files();
    f.ui.dialogResults = {f.env.path("Pics/text.jpg")};
    mnu_Tag_sel_Cover(f.p);
    EXPECT_EQ(f.ui.titles(), QStringList{"Cover"});
    EXPECT_EQ(f.files(), before);

    f.ui.messages.clear();
    f.ui.dialogResults = {f.env.path("Pics/front.jpg")};
    mnu_Tag_sel_Cover(f.p);
    ASSERT_EQ(f.ui.fileDialogs.size(), 2u);
    EXPECT_EQ(f.ui.fileDialogs[1].title, "Open");
    EXPECT_EQ(f.ui.fileDialogs[1].filterDescription, "JPEG Image Files (*.jpg)");
    EXPECT_TRUE(f.ui.messages.empty());
    for (int row : {0, 1}) {
        EXPECT_TRUE(readFile(f.paths[row]).contains(jpeg)) << row;
        EXPECT_FALSE(f.v2(row).Tag2_Fields.Cover_File.isEmpty()) << row;
    }
}

TEST(SelectionTagging, BadRowsAreToldAndTheRunGoesOn)
{
    SelectionFixture f;
    QFile::remove(f.paths[0]);
    const QString huge(10000, 'x');
    f.ui.inputs = {huge};
    EXPECT_EQ(mnu_Tag_sel_Artist(f.p), 1);
    ASSERT_EQ(f.ui.titles(), QStringList{"File not found"});
    EXPECT_EQ(f.ui.messages[0].text, f.paths[0]);
    EXPECT_EQ(f.v2(1).Tag2_Fields.Artist, huge);
    EXPECT_EQ(f.v1(1).Artist.text(), huge.left(30));
    EXPECT_EQ(f.lib.MP3_List.field(1, ColArtist), huge);
    EXPECT_TRUE(f.recordsMatchList());

    // A read-only file: both writes are told, the file stays as it was.
    SelectionFixture g;
    QFile::setPermissions(g.paths[1], QFile::ReadOwner);
    const FileState was = stateOf(g.paths[1]);
    g.ui.inputs = {"Fresh"};
    EXPECT_EQ(mnu_Tag_sel_Album(g.p), 1);
    EXPECT_EQ(stateOf(g.paths[1]), was);
    EXPECT_TRUE(g.ui.titles().contains("Tag Save Failure"));
    EXPECT_TRUE(g.ui.titles().contains("Tag update error"));
    EXPECT_EQ(g.lib.MP3_List.field(0, ColAlbum), "Fresh");
    EXPECT_EQ(g.lib.MP3_List.field(1, ColAlbum), "Alb");
    EXPECT_TRUE(g.recordsMatchList());
}
