#include "main_timer.h"

namespace sonorit {

void MainTimer::tick(const MainTimerWork& work, bool& menuRefreshWanted, bool cdPollFlag)
{
    tick_ = (tick_ + 1) % 10;
    if (work.colourCycle)
        work.colourCycle();
    if (work.marquee)
        work.marquee();
    if (menuRefreshWanted) {
        if (work.updateMenus)
            work.updateMenus();
        menuRefreshWanted = false;
    }
    if ((tick_ == 0 || tick_ == 5) && work.playerPosition)
        work.playerPosition();
    if ((tick_ == 2 || tick_ == 7) && cdPollFlag && work.cdPoll)
        work.cdPoll();
}

}  // namespace sonorit
