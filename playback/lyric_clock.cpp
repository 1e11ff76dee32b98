#include "lyric_clock.h"

#include <algorithm>
#include <cmath>

namespace sonorit {

namespace {
qint64 lineTime(const LyricState& l, int index)
{
    return index >= 1 && index < static_cast<int>(l.Lyric_Time.size()) ? l.Lyric_Time[static_cast<size_t>(index)] : 0;
}

QString lineText(const LyricState& l, int index)
{
    return index >= 1 && index < static_cast<int>(l.Lyric_Text.size()) ? l.Lyric_Text[static_cast<size_t>(index)]
                                                                       : QString();
}

int lineCount(const LyricState& l)
{
    const int stored = static_cast<int>(std::min(l.Lyric_Text.size(), l.Lyric_Time.size())) - 1;
    return std::max(0, std::min(l.Lyric_Count, stored));
}
}  // namespace

int Lyric_Advance(const LyricState& lyrics, int pos, qint64 ms)
{
    const int count = lineCount(lyrics);
    if (pos == 0) {
        // From before the first line the clock catches up at once.
        while (pos < count && lineTime(lyrics, pos + 1) < ms)
            ++pos;
    } else if (pos < count && lineTime(lyrics, pos + 1) < ms) {
        ++pos;
    }
    return pos;
}

LyricLines Lyric_Display(const LyricState& lyrics, int pos, qint64 ms)
{
    const int count = lineCount(lyrics);
    if (pos == 0) {
        if (lineTime(lyrics, 1) - 1800 >= ms)
            return {};
        return {QString(), lineText(lyrics, 1)};
    }
    if (pos >= count)
        return {lineText(lyrics, pos), QString()};
    return {lineText(lyrics, pos), lineText(lyrics, pos + 1)};
}

std::optional<LyricLines> LyricClock::tick(const LyricState& lyrics, int& pos,
                                           const std::function<std::optional<double>()>& position,
                                           const std::function<void()>& yield)
{
    if (busy_)
        return std::nullopt;
    busy_ = true;
    const std::optional<double> seconds = position ? position() : std::nullopt;
    if (!seconds || !std::isfinite(*seconds)) {
        busy_ = false;
        return std::nullopt;
    }
    const qint64 ms = static_cast<qint64>(std::clamp(std::floor(*seconds * 1000), -1e15, 1e15));
    pos = Lyric_Advance(lyrics, pos, ms);
    const LyricLines lines = Lyric_Display(lyrics, pos, ms);
    if (yield)
        yield();
    busy_ = false;
    return lines;
}

}  // namespace sonorit
