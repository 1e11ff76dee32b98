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
#include "tests/support/tag_bytes.h"
#include "ui/super_tagging.h"

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

    const QList<QWidget*> numbers = array(window, "LabelNumber"), songs = array(window, "TextSong"),
                          artists = array(window, "TextVA");
    ASSERT_EQ(numbers.size(), 25);
    ASSERT_EQ(songs.size(), 25);
    auto* scroll = window.findChild<QScrollBar*>("VScroll1");
    ASSERT_TRUE(scroll->isVisible());
    EXPECT_EQ(text(numbers[24]), "25");
    EXPECT_FALSE(artists[0]->isEnabled());  // one artist for the album
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

    auto* va = window.findChild<QCheckBox*>("CheckVA");
    va->setChecked(true);
    EXPECT_TRUE(artists[24]->isEnabled());
    EXPECT_FALSE(window.findChild<QLineEdit*>("TextArtist")->isEnabled());
    va->setChecked(false);

    // A 27th, empty entry: the bar reaches one further, minus takes it again.
    QTest::mouseClick(window.findChild<QPushButton*>("CommandTrackPlus"), Qt::LeftButton);
    EXPECT_EQ(window.findChild<QLineEdit*>("TextTrackCount")->text(), "27");
    EXPECT_EQ(scroll->maximum(), 2);
    QTest::mouseClick(window.findChild<QPushButton*>("CommandTrackMin"), Qt::LeftButton);
    EXPECT_EQ(scroll->maximum(), 1);
    EXPECT_FALSE(window.findChild<QPushButton*>("CommandTrackMin")->isEnabled());

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
