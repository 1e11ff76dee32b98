// The album tagger's window over an album of 26 real tracks: the scroll bar,
// the marker, the move buttons, typing into a row and the write.
#include <QtTest>
#include <QtWidgets>
#include <gtest/gtest.h>

#include "library/refresh.h"
#include "shell/settings_families.h"
#include "tagedit/track_follow.h"
#include "tags/id3v2_reader.h"
#include "tests/library/work_fixture.h"
#include "tests/support/library_maker.h"
#include "tests/support/tag_bytes.h"
#include "ui/super_tagging.h"
#include "ui/tag_panels_view.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct AlbumWindowTest : ::testing::Test {
    WorkFixture lib;
    TagState tags{lib.app.Data_Folder()};
    TagEditContext edit{lib.app, lib.lib, lib.ui, tags};
    QStringList paths;

    void SetUp() override
    {
        Get_Tag_Settings(lib.app);
        const QByteArray audio = makeMp3({0.2});
        for (int i = 1; i <= 26; ++i) {
            const QByteArray no = QByteArray::number(i);
            paths << lib.main + QStringLiteral("Art/Alb/%1.mp3").arg(i, 2, 10, QLatin1Char('0'));
            writeFile(paths.last(), tag(textFrame("TPE1", "Art") + textFrame("TALB", "Alb") + textFrame("TRCK", no)
                                        + textFrame("TIT2", "Song " + no))
                                        + audio);
        }
        mnu_Library_Refresh(lib.ctx);
        lib.ui.messages.clear();  // the refresh's report
        lib.lib.MP3_List.select(Library_Row_Of(lib.lib.MP3_List, paths[3]));
    }
    static QList<QWidget*> array(const QWidget& w, const char* name)
    {
        QList<QWidget*> list = w.findChildren<QWidget*>(name);
        std::sort(list.begin(), list.end(),
                  [](QWidget* a, QWidget* b) { return a->property("row").toInt() < b->property("row").toInt(); });
        return list;
    }
    static QString text(QWidget* w)
    {
        if (auto* l = qobject_cast<QLabel*>(w))
            return l->text();
        return qobject_cast<QLineEdit*>(w)->text();
    }
};

}  // namespace

TEST_F(AlbumWindowTest, TwentySixTracksScrollIntoTheLastRowAndAreWritten)
{
    ui::SuperTaggingWindow window(edit, nullptr);
    window.model().Open_Album(Album_Tag_Rows(edit));
    window.showModel();
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(window.windowTitle(), "Album Tagging");

    const QList<QWidget*> numbers = array(window, "LabelNumber"), songs = array(window, "TextSong");
    ASSERT_EQ(numbers.size(), 25);
    ASSERT_EQ(songs.size(), 25);
    auto* scroll = window.findChild<QScrollBar*>("VScroll1");
    ASSERT_TRUE(scroll->isVisible());
    EXPECT_EQ(text(numbers[24]), "25");
    EXPECT_EQ(window.findChild<QComboBox*>("Combo_Genre")->currentText(), "Unknown");  // the tracks have none
    auto* up = window.findChild<QPushButton*>("CommandUp");
    auto* down = window.findChild<QPushButton*>("CommandDown");
    EXPECT_FALSE(up->isEnabled());  // the marker stands on the first row
    EXPECT_TRUE(down->isEnabled());
    EXPECT_TRUE(numbers[0]->styleSheet().contains("rgb(0, 0, 255)"));

    scroll->setValue(scroll->maximum());
    EXPECT_EQ(text(numbers[24]), "26");
    EXPECT_EQ(text(songs[24]), "Song 26");
    EXPECT_EQ(text(numbers[0]), "02");
    EXPECT_FALSE(numbers[0]->styleSheet().contains("rgb(0, 0, 255)"));  // the marked first track scrolled away

    // Clicking the last row marks it; it cannot go further down.
    QTest::mouseClick(songs[24], Qt::LeftButton);
    EXPECT_TRUE(numbers[24]->styleSheet().contains("rgb(0, 0, 255)"));
    EXPECT_FALSE(down->isEnabled());
    EXPECT_TRUE(up->isEnabled());
    auto* song = qobject_cast<QLineEdit*>(songs[24]);
    song->selectAll();
    QTest::keyClicks(song, "Finale");
    QTest::keyClicks(window.findChild<QLineEdit*>("TextYear"), "19a84");

    // A 27th, empty entry: the bar reaches one further.
    QTest::mouseClick(window.findChild<QPushButton*>("CommandTrackPlus"), Qt::LeftButton);
    EXPECT_EQ(scroll->maximum(), 2);
    QTest::mouseClick(window.findChild<QPushButton*>("CommandTrackMin"), Qt::LeftButton);

    QTest::mouseClick(window.findChild<QPushButton*>("CommandOK"), Qt::LeftButton);
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(window.findChild<QLabel*>("LabelName")->text(), "Updating Finale");
    TagState back(lib.app.Data_Folder());
    Read_Tag2(back, paths[25], Tag2Mode::Panel);
    EXPECT_EQ(back.Tag2_Fields.Title, "Finale");
    EXPECT_EQ(back.Tag2_Fields.Track, "26");
    EXPECT_EQ(back.Tag2_Fields.Year, "1984");
    EXPECT_TRUE(lib.ui.messages.empty());
}

namespace {

class AlbumButtonsTest : public BaseWindowTest {
protected:
    QString music;
    void openLibrary()
    {
        music = env.path("Music/");
        LibraryMaker maker(state.paths, env.path("libs/Two.vkt"));
        for (const char* n : {"1", "2"}) {
            writeTaggedMp3(music + n + ".mp3", TrackTags{"Art", "Alb", n, QStringLiteral("Song ") + n, "2001", "Pop"});
            TrackRow row = makeTrack("Art", QStringLiteral("Song ") + n, env.path("Music"), QString(n) + ".mp3", "Alb");
            row[ColTrack] = n;
            maker.track(row);
        }
        writeTaggedMp3(music + "lone.mp3", TrackTags{});
        maker.track(makeTrack("", "Lone", env.path("Music"), "lone.mp3", ""));
        ASSERT_EQ(start(Join_Command_Line({'"' + maker.write().vkt + '"'})), StartupResult::Started);
        base.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&base));
    }
    int rowTitled(const QString& title) const { return int(column(list()->model(), ColTitle).indexOf(title)); }
};

}  // namespace

TEST_F(AlbumButtonsTest, ButtonsOpenTheWindowOrSayWhyNot)
{
    openLibrary();
    QStringList seen;
    QStringList rows;
    ModalAnswerer answers({
        pressButton(seen, QMessageBox::Ok),  // the track without album
        pressButton(seen, QMessageBox::Ok),  // one row is no selection
        [&rows](QWidget* modal) {
            ASSERT_EQ(modal->objectName(), "SuperTagging");
            for (QWidget* w : AlbumWindowTest::array(*modal, "TextSong"))
                rows << qobject_cast<QLineEdit*>(w)->text();
            auto* song = modal->findChildren<QLineEdit*>("TextSong").first();
            song->selectAll();
            QTest::keyClicks(song, "Opening");
            modal->findChild<QPushButton*>("CommandOK")->click();
        },
    });
    auto* albumTag = find<QPushButton>("CommandAlbumTag");
    auto* superTag = find<QPushButton>("CommandSuperTag");
    base.library().MP3_List.select(rowTitled("Lone"));
    albumTag->click();
    superTag->click();
    base.library().MP3_List.select(rowTitled("Song 1"));
    Select_Library_Row(base.tagPanels().context(), rowTitled("Song 1"));  // on show in the panels
    albumTag->click();
    EXPECT_TRUE(answers.done());
    EXPECT_EQ(seen, QStringList({"Unknown Artist/Album: No Artist/Album known for this Track",
                                 "Multiple file selection required: Use [Shift] and/or [Ctrl] keys in combination "
                                 "with [Up] [Down] or mouse to make multiple selection in library list."}));
    EXPECT_EQ(rows.mid(0, 3), QStringList({"Song 1", "Song 2", ""}));
    EXPECT_EQ(find<QLineEdit>("Tag2_Text_Title")->text(), "Opening");
    EXPECT_EQ(list()->model()->index(rowTitled("Opening"), ColTrack).data().toString(), "01");
}
