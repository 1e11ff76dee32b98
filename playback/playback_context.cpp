#include "playback_context.h"

namespace sonorit {

void PlaybackContext::requestMenuRefresh()
{
    app.Menu_Refresh_Wanted = true;
    view.menuRefreshWanted();
}

void bindPlayback(PlaybackContext& c)
{
    c.lib.Playlist_Paths = &c.play.Play_File;
    c.play.Play_List.setView(&c.view);
}

}  // namespace sonorit
