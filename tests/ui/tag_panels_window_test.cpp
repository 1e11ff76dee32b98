// The tag panels in the main window: a click on a row fills them, typing keeps
// the boxes' rules, Enter walks the fixed order, the write button stores what
// was typed, and the panels fit the window at the sizes people use.
#include "tests/support/library_maker.h"
#include "tests/support/tagged_mp3.h"
#include "ui/tag_panels_view.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

class TagPanelsWindowTest : public BaseWindowTest {
protected:
    QString music;

    void openLibraryOfTwo()
    {
        music = env.path("Music/");
        writeTaggedMp3(music + "1.mp3", TrackTags{"Art", "Alb", "1", "Song 1", "2001", "Pop", false});
        writeTaggedMp3(music + "2.mp3", TrackTags{"Art", "Alb", "2", "Song 2", "2001", "Pop", false});
        LibraryMaker maker(state.paths, env.path("libs/Two.vkt"));
        maker.track(makeTrack("Art", "Song 1", env.path("Music"), "1.mp3"));
        maker.track(makeTrack("Art", "Song 2", env.path("Music"), "2.mp3"));
        ASSERT_EQ(start(Join_Command_Line({'"' + maker.write().vkt + '"'})), StartupResult::Started);
        base.Update_Menus();
    }
    void click(int row)
    {
        const QRect rect = list()->visualRect(list()->model()->index(row, ColArtist));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, rect.center());
    }
    QLineEdit* box(const char* name) const { return find<QLineEdit>(name); }
};

}  // namespace

TEST_F(TagPanelsWindowTest, ClickEditWriteAndReadBack)
{
    openLibraryOfTwo();
    base.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&base));
    click(0);
    EXPECT_EQ(box("Tag2_Text_Title")->text(), "Song 1");
    QTest::keyClick(list(), Qt::Key_Down);  // a key press on the list shows the row it moved to
    QTest::qWait(20);
    EXPECT_EQ(box("Tag2_Text_Title")->text(), "Song 2");
    EXPECT_EQ(find<QComboBox>("Tag2_Combo_Genre")->currentText(), "Pop");
    EXPECT_EQ(box("Tag2_Text_Comment")->text(), TagStamp());
    EXPECT_FALSE(find<QLabel>("labSize")->text().isEmpty());

    // Digits only in Track, the limit of the Tag1 boxes, anything in Tag2's.
    box("Tag2_Text_Track")->setFocus();
    box("Tag2_Text_Track")->clear();
    QTest::keyClicks(box("Tag2_Text_Track"), "x7y9z");
    EXPECT_EQ(box("Tag2_Text_Track")->text(), "79");
    box("Tag1_Text_Artist")->clear();
    QTest::keyClicks(box("Tag1_Text_Artist"), QString(35, 'a'));
    EXPECT_EQ(box("Tag1_Text_Artist")->text(), QString(30, 'a'));
    box("Tag2_Text_Title")->clear();
    QTest::keyClicks(box("Tag2_Text_Title"), "A Title Longer Than Thirty Characters");

    // Enter in Comment reaches the write button, and Enter there presses it.
    box("Tag2_Text_Comment")->setFocus();
    QTest::keyClick(box("Tag2_Text_Comment"), Qt::Key_Return);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    // What the write stores the tag editing tests show; the list follows it.
    EXPECT_EQ(list()->model()->index(1, ColTitle).data().toString(), "A Title Longer Than Thirty Characters");
    EXPECT_EQ(list()->model()->index(1, ColTrack).data().toString(), "79");
    EXPECT_EQ(base.tagPanels().panels().Tag_Shown_Path, music + "2.mp3");
}

TEST_F(TagPanelsWindowTest, EnterWalksTheFixedOrder)
{
    openLibraryOfTwo();
    base.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&base));
    base.activateWindow();
    const std::vector<std::pair<const char*, const char*>> steps = {
        {"Tag1_Text_Artist", "Tag1_Text_Album"},   {"Tag1_Text_Album", "Tag1_Text_Track"},
        {"Tag1_Text_Track", "Tag1_Text_Year"},     {"Tag1_Text_Year", "Tag1_Text_Title"},
        {"Tag1_Text_Title", "Tag1_Combo_Genre"},   {"Tag1_Combo_Genre", "Tag1_Text_Comment"},
        {"Tag1_Text_Comment", "Command_Write_Tag1"}, {"Tag2_Text_Artist", "Tag2_Text_Album"},
        {"Tag2_Text_Album", "Tag1_Text_Track"},    {"Tag2_Text_Track", "Tag2_Text_Year"},
        {"Tag2_Text_Year", "Tag2_Combo_VA"},       {"Tag2_Combo_VA", "Tag2_Text_Title"},
        {"Tag2_Text_Title", "Tag2_Combo_Genre"},   {"Tag2_Combo_Genre", "Tag2_Text_Comment"},
        {"Tag2_Text_Comment", "Command_Write_Tag2"},
    };
    for (const auto& [from, to] : steps) {
        auto* widget = find<QWidget>(from);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
        ASSERT_NE(QApplication::focusWidget(), nullptr) << from;
        EXPECT_EQ(QApplication::focusWidget()->objectName(), to) << from;
    }
    // "User Defined" opens the genre box, which then stands in Title's way.
    auto* genre = find<QComboBox>("Tag2_Combo_Genre");
    genre->setCurrentIndex(149);
    emit genre->activated(149);
    EXPECT_TRUE(box("Tag2_Text_Genre")->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), box("Tag2_Text_Genre"));
    box("Tag2_Text_Title")->setFocus();
    QTest::keyClick(box("Tag2_Text_Title"), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box("Tag2_Text_Genre"));
    QTest::keyClick(box("Tag2_Text_Genre"), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), genre);
}

TEST_F(TagPanelsWindowTest, PanelsFitTheSmallestWindow)
{
    // The window at its smallest: every tag control lies inside the tag
    // column and none covers another.
    base.resize(1024, 660);
    base.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&base));
    EXPECT_LE(base.minimumSizeHint().width(), 1024);
    // Across, within the visible part of the column; down, the column scrolls
    // where the screen is low.
    auto* column = find<QScrollArea>("TagScroll")->viewport();
    QList<QWidget*> controls;
    for (auto* frame : {"FrameTag1", "FrameTag2"})
        for (QWidget* w : find<QGroupBox>(frame)->findChildren<QWidget*>())
            if (qobject_cast<QLineEdit*>(w) || qobject_cast<QComboBox*>(w) || qobject_cast<QPushButton*>(w))
                controls << w;
    ASSERT_EQ(controls.size(), 24);
    const QRect room(0, -10000, column->width(), 20000);
    for (QWidget* w : controls) {
        const QRect r(w->mapTo(column, QPoint(0, 0)), w->size());
        EXPECT_TRUE(room.contains(r)) << w->objectName().toStdString();
        EXPECT_GE(w->width(), w->minimumSizeHint().width()) << w->objectName().toStdString();
        for (QWidget* other : controls) {
            if (other == w)
                continue;
            EXPECT_FALSE(r.intersects(QRect(other->mapTo(column, QPoint(0, 0)), other->size())))
                << w->objectName().toStdString() << " / " << other->objectName().toStdString();
        }
    }
}
