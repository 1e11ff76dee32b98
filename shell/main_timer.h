#pragma once
// The 200 ms heartbeat: a tick counter from 0 to 9 and what runs on which tick.
#include <functional>

namespace sonorit {

struct MainTimerWork {
    std::function<void()> colourCycle;      // every tick
    std::function<void()> marquee;          // every tick
    std::function<void()> updateMenus;      // when a refresh is wanted
    std::function<void()> playerPosition;   // ticks 0 and 5
    std::function<void()> cdPoll;           // ticks 2 and 7 while the CD-poll flag is set
};

class MainTimer {
public:
    static constexpr int kIntervalMs = 200;

    // One timer event. `menuRefreshWanted` is consumed; `cdPollFlag` is read.
    void tick(const MainTimerWork& work, bool& menuRefreshWanted, bool cdPollFlag);
    int Timer_Tick() const { return tick_; }

private:
    int tick_ = 0;
};

}  // namespace sonorit
