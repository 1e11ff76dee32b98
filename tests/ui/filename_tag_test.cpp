// The filename tagger's window on a library of real files: opened from the
// Extra menu on the selected row, word runs picked in the combos, written
// with the list following; a click in the main list follows into it.
#include "tagedit/filename_tagger.h"
#include "tests/support/library_maker.h"
#include "tests/support/tagged_mp3.h"
#include "ui/filename_tag.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

TEST_F(BaseWindowTest, FilenameTaggerWritesTheRunsPickedFromTheName)
{
    const QString music = env.path("Music");
    LibraryMaker maker(state.paths, env.path("libs/Names.vkt"));
    for (const char* name : {"Abba - Gold - Mamma Mia.mp3", "Abba - Gold - SOS.mp3"}) {
        ASSERT_TRUE(writeTaggedMp3(music + "/" + name, {}, {0.5}));
        maker.track(makeTrack("", "", music, name));
    }
    ASSERT_EQ(start(Join_Command_Line({'"' + maker.write().vkt + '"'})), StartupResult::Started);
    base.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&base));
    TrackList& rows = base.library().MP3_List;
    rows.select(0);

    find<QAction>("mnu_Extra_Filename_Tag")->trigger();
    auto* window = find<ui::FilenameTag>("FilenameTag");
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(window->isVisible());
    ASSERT_TRUE(base.tagEdit().filenameTaggerFollow);
    const auto w = [window](const char* name) { return window->findChild<QWidget*>(name); };
    EXPECT_EQ(qobject_cast<QPlainTextEdit*>(w("FilenameText"))->toPlainText(), "Abba - Gold - Mamma Mia");
    auto* artist = qobject_cast<QComboBox*>(w("FT_Tag2_Combo_Artist"));
    auto* album = qobject_cast<QComboBox*>(w("FT_Tag2_Combo_Album"));
    auto* title = qobject_cast<QComboBox*>(w("FT_Tag2_Combo_Title"));
    ASSERT_EQ(artist->count(), 10);
    EXPECT_EQ(artist->itemText(1), "Abba Gold");

    artist->setCurrentIndex(0);  // Abba
    album->setCurrentIndex(4);   // Gold
    title->setCurrentIndex(8);   // Mamma Mia
    QTest::keyClicks(w("FT_Tag2_Text_Track"), "4x2");
    auto* genre = qobject_cast<QComboBox*>(w("FT_Tag2_Combo_Genre"));
    genre->setCurrentIndex(13);  // Pop
    emit genre->activated(13);
    qobject_cast<QRadioButton*>(w("FT_Option1_2"))->setChecked(true);
    qobject_cast<QCheckBox*>(w("FT_Check_Autoselect"))->setChecked(true);
    qobject_cast<QPushButton*>(w("FT_Command_Write_Tag"))->click();

    // What the write stores the tag editing tests show; the list follows it.
    const QAbstractItemModel* model = list()->model();
    EXPECT_EQ(QStringList({column(model, ColArtist)[0], column(model, ColAlbum)[0], column(model, ColTitle)[0],
                           column(model, ColTrack)[0], column(model, ColGenre)[0]}),
              QStringList({"Abba", "Gold", "Mamma Mia", "42", "Pop"}));
    // Auto-select moved on to the next row.
    EXPECT_EQ(rows.selected(), 1);
    EXPECT_EQ(qobject_cast<QPlainTextEdit*>(w("FilenameText"))->toPlainText(), "Abba - Gold - SOS");
    EXPECT_EQ(QApplication::focusWidget(), artist);

    // A click in the main list loads that track here too.
    const QRect first = list()->visualRect(list()->model()->index(0, ColArtist));
    window->move(base.geometry().right() + 10, 0);  // beside the main window, not over its list
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, first.center());
    EXPECT_EQ(qobject_cast<QPlainTextEdit*>(w("FilenameText"))->toPlainText(), "Abba - Gold - Mamma Mia");
    EXPECT_EQ(artist->currentText(), "Abba");

    window->close();
    EXPECT_FALSE(base.tagEdit().filenameTaggerFollow);
}
