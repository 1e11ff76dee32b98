// The lyric clock against a fake clock and the font fitting against a fake
// measure.
#include <gtest/gtest.h>

#include "playback/font_fit.h"
#include "playback/lyric_clock.h"
#include "tests/support/qt_gtest_print.h"

using namespace sonorit;

namespace {

LyricState lyrics(std::vector<std::pair<qint32, QString>> lines)
{
    LyricState l;
    for (const auto& [ms, text] : lines) {
        l.Lyric_Time.push_back(ms);
        l.Lyric_Text.push_back(text);
    }
    l.Lyric_Count = static_cast<int>(lines.size());
    return l;
}

// A font of whole sizes that only offers every second size from 12 on; each
// character is `size` units wide.
struct FakeMeasure : TextMeasure {
    std::vector<double> asked;
    double applySize(double requested) override
    {
        asked.push_back(requested);
        double s = std::floor(requested);
        if (s >= 12 && static_cast<int>(s) % 2)
            s -= 1;
        return s;
    }
    double textWidth(double size, const QString& text) override { return size * text.size(); }
    double textHeight(double size, const QString&) override { return size * 20; }
};

}  // namespace

TEST(LyricClock, CatchesUpFromTheStartThenStepsOneLinePerTick)
{
    const LyricState l = lyrics({{0, "zero"}, {2000, "one"}, {4000, "two"}, {6000, "three"}});
    double now = 0;
    auto clock = [&now]() -> std::optional<double> { return now; };
    LyricClock timer2;
    int pos = 0;

    // A first line at 0 ms shows at once as the next line, then as the
    // current one on the first tick after it began.
    EXPECT_EQ(timer2.tick(l, pos, clock), (LyricLines{"", "zero"}));
    now = 0.1;
    EXPECT_EQ(timer2.tick(l, pos, clock), (LyricLines{"zero", "one"}));

    // A seek forward runs through the lines at one per tick...
    now = 6.5;
    EXPECT_EQ(timer2.tick(l, pos, clock), (LyricLines{"one", "two"}));
    EXPECT_EQ(timer2.tick(l, pos, clock), (LyricLines{"two", "three"}));
    EXPECT_EQ(timer2.tick(l, pos, clock), (LyricLines{"three", ""}));  // the last line: no next
    // ... and a seek back waits.
    now = 1;
    EXPECT_EQ(timer2.tick(l, pos, clock), (LyricLines{"three", ""}));

    // From before the first line the clock catches up in one tick.
    int fresh = 0;
    now = 4.5;
    EXPECT_EQ(timer2.tick(l, fresh, clock), (LyricLines{"two", "three"}));

    // The 1.8 s preview of a later first line.
    const LyricState late = lyrics({{5000, "late"}, {9000, "later"}});
    int p = 0;
    EXPECT_EQ(Lyric_Display(late, p, 3200), (LyricLines{"", ""}));
    EXPECT_EQ(Lyric_Display(late, p, 3201), (LyricLines{"", "late"}));

    // No graph: nothing shown, the labels stay; no re-entry.
    EXPECT_FALSE(timer2.tick(l, pos, [] { return std::optional<double>(); }));
    std::optional<LyricLines> inner;
    timer2.tick(l, pos, clock, [&] { inner = timer2.tick(l, pos, clock); });
    EXPECT_FALSE(inner);
}

TEST(FontFit, TheLongestLineJustSpansEightyPercent)
{
    FakeMeasure m;
    // 10 characters, picture 1000 wide: the first size wider than 800 is
    // above 80; sizes from 12 on come in even steps, so the walk ends on 82.
    const LyricLayout layout = Fit_Lyric_Font(m, "0123456789", 1000, 500);
    EXPECT_EQ(layout.fontSize, 82);
    EXPECT_EQ(layout.labelHeight, static_cast<int>(82 * 20 * 1.11));
    EXPECT_EQ(layout.tops, (std::array<int, 4>{350, 350 + 1820, 360, 350 + 1820 + 10}));
    EXPECT_EQ(m.asked.back(), 8);  // the window's font goes back to 8
    // The step grows when a size repeats: 12 -> 13 gives 12 again, so 12 + 2.
    EXPECT_NE(std::find(m.asked.begin(), m.asked.end(), 14.0), m.asked.end());

    // A small picture shrinks the font: the fit always starts at 8.
    EXPECT_EQ(Fit_Lyric_Font(m, "0123456789", 100, 100).fontSize, 9);
    // Text that measures nothing cannot loop for ever.
    EXPECT_GT(Fit_Lyric_Font(m, "", 100, 100).fontSize, 8);
}
