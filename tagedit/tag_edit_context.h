#pragma once
// Everything a tag-editing routine works with: the library, the person, the
// tag engine's records of the track on show and, where there is one, the
// playlist whose rows follow a write.
#include <QString>
#include <functional>

#include "library/library_state.h"
#include "shell/app_state.h"
#include "tags/tag_state.h"

namespace sonorit {

struct PlaybackState;

struct TagEditContext {
    AppState& app;
    LibraryState& lib;
    UiPort& ui;
    TagState& tags;
    PlaybackState* play = nullptr;  // none in the command-line front end
    // Set while the filename tagger is open: a track selected in a list is
    // loaded there too (`row` is its MP3_List row, -1 from the playlist).
    std::function<void(const QString& path, int row)> filenameTaggerFollow = {};

    LibraryContext library() { return LibraryContext{app, lib, ui}; }
};

// A TagState for the program's data folder and the setting that reads
// ID3v2.4 and v2.2 tags.
TagState Fresh_Tag_State(const AppState& app);

}  // namespace sonorit
