#pragma once
// The lyric clock of the large cover window: every 100 ms it moves the line
// now sung towards the track's position (catching up at once from before the
// first line, one line per tick otherwise, never backwards) and gives the two
// lines to show; the first line shows as the next one 1.8 s before it starts.
#include <QString>
#include <functional>
#include <optional>

#include "tags/tag_state.h"

namespace sonorit {

struct LyricLines {
    QString current;  // Label1(0) and Label1(2)
    QString next;     // Label1(1) and Label1(3)
    bool operator==(const LyricLines& o) const { return current == o.current && next == o.next; }
};

// The new Lyric_Pos for the position `ms`.
int Lyric_Advance(const LyricState& lyrics, int pos, qint64 ms);
// What the labels show at `pos` and `ms`.
LyricLines Lyric_Display(const LyricState& lyrics, int pos, qint64 ms);

class LyricClock {
public:
    // One Timer2 tick. `position` gives seconds, nothing when the graph is
    // gone: then the tick ends at once and the labels stay (nothing
    // returned). A tick that comes while one runs is dropped as well.
    std::optional<LyricLines> tick(const LyricState& lyrics, int& pos,
                                   const std::function<std::optional<double>()>& position,
                                   const std::function<void()>& yield = {});

private:
    bool busy_ = false;
};

}  // namespace sonorit
