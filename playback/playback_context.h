#pragma once
// Everything a playback routine works with. The view is never null: without
// a window it is a PlayerView that does nothing.
#include "library/library_state.h"
#include "playback/media_graph.h"
#include "playback/playback_state.h"
#include "playback/player_view.h"
#include "shell/app_state.h"
#include "shell/ui_port.h"

namespace sonorit {

struct PlaybackContext {
    AppState& app;
    LibraryState& lib;
    PlaybackState& play;
    UiPort& ui;
    MediaGraphFactory& graphs;
    PlayerView& view;

    LibraryContext library() { return LibraryContext{app, lib, ui}; }
    // Sets AppState::Menu_Refresh_Wanted and tells the view.
    void requestMenuRefresh();
};

// Lets the library's rename and relocate keep Play_File pointing at moved
// files, and the playlist rows tell the view.
void bindPlayback(PlaybackContext& c);

}  // namespace sonorit
