// MP3_List's selection in the view and in the core kept in step: the user's
// clicks reach the core, the core's selection shows in the view, also after
// the list was reset or hidden for bulk work.
#include "tests/support/library_maker.h"
#include "tests/support/tagged_mp3.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

class ListSelectionTest : public BaseWindowTest {
protected:
    TrackList& core() { return base.library().MP3_List; }
    std::vector<int> viewRows() const
    {
        std::vector<int> rows;
        for (const QModelIndex& index : list()->selectionModel()->selectedRows())
            rows.push_back(index.row());
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    int viewCurrent() const { return list()->currentIndex().isValid() ? list()->currentIndex().row() : -1; }
    void click(int row, Qt::KeyboardModifiers modifiers = {})
    {
        const QRect rect = list()->visualRect(list()->model()->index(row, ColArtist));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, modifiers, rect.center());
    }
};

TEST_F(ListSelectionTest, ViewAndCoreSelectTheSameRows)
{
    LibraryMaker maker(state.paths, env.path("libs/Six.vkt"));
    // Real files: a click also shows the track in the tag panels.
    const QString m = env.path("m");
    for (const char* title : {"a", "b", "c", "d", "e", "f"}) {
        ASSERT_TRUE(writeTaggedMp3(m + "/" + title + ".mp3", {}));
        maker.track(makeTrack("Artist", title, m, QString(title) + ".mp3"));
    }
    ASSERT_EQ(start(Join_Command_Line({'"' + maker.write().vkt + '"'})), StartupResult::Started);
    ASSERT_EQ(list()->model()->rowCount(), 6);

    // Clicks with and without the modifier keys reach the core.
    click(1);
    click(3, Qt::ControlModifier);
    click(5, Qt::ShiftModifier);
    EXPECT_EQ(core().selectedRows(), (std::vector<int>{1, 3, 4, 5}));
    EXPECT_EQ(core().selected(), 5);
    click(4, Qt::ControlModifier);
    EXPECT_EQ(core().selectedRows(), (std::vector<int>{1, 3, 5}));
    EXPECT_EQ(core().selected(), 4);
    click(2);
    EXPECT_EQ(core().selectedRows(), std::vector<int>{2});

    // What the core selects shows in the view.
    core().setSelection({0, 2, 3}, 3);
    EXPECT_EQ(viewRows(), (std::vector<int>{0, 2, 3}));
    EXPECT_EQ(viewCurrent(), 3);
    core().select(4);
    EXPECT_EQ(viewRows(), std::vector<int>{4});
    EXPECT_EQ(viewCurrent(), 4);
    core().select(-1);
    EXPECT_EQ(viewRows(), std::vector<int>{});
    EXPECT_EQ(viewCurrent(), -1);

    // A reset of the view takes the selection anew from the core, whose
    // marks moved with their rows.
    core().setSelection({0, 1}, 1);
    core().sortByColumn(ColTitle, false);
    EXPECT_EQ(core().selectedRows(), (std::vector<int>{4, 5}));
    EXPECT_EQ(viewRows(), core().selectedRows());
    EXPECT_EQ(viewCurrent(), core().selected());

    // While the core works in bulk the list is hidden; what it selected
    // meanwhile shows once it is back, with the rows it added.
    core().setHidden(true);
    EXPECT_FALSE(list()->isVisible());
    core().append(makeTrack("Artist", "g", m, "g.mp3"));
    core().setSelection({0, 6}, 6);
    core().setHidden(false);
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(list()->model()->rowCount(), 7);
    EXPECT_EQ(viewRows(), (std::vector<int>{0, 6}));
    EXPECT_EQ(viewCurrent(), 6);
    core().setHidden(true);
    core().select(2);
    core().setHidden(false);
    EXPECT_EQ(viewRows(), std::vector<int>{2});
}

}  // namespace
