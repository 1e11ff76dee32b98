#pragma once
// What the library keeps in memory besides the global paths: the list, the
// slot counter and the free IDs, the search lists and the naming rules.
#include <QString>
#include <cstdint>
#include <vector>

#include "library/naming_rules.h"
#include "library/track_list.h"
#include "search/search_lists.h"

namespace sonorit {

struct AppState;
class UiPort;

// Lets tests make a record writer fail at a named step, as a full disk or a
// vanished folder would.
class FaultInjector {
public:
    virtual ~FaultInjector() = default;
    virtual bool fail(const char* step) = 0;
};

struct LibraryState {
    TrackList MP3_List;
    int ID_COUNT = 0;
    std::vector<std::int32_t> Free_IDs;  // Free_ID_Count is its size
    SearchLists search;
    NamingState naming;
    FaultInjector* faults = nullptr;

    int Free_ID_Count() const { return static_cast<int>(Free_IDs.size()); }
    bool failAt(const char* step) const { return faults && faults->fail(step); }
};

// Everything a library routine works with.
struct LibraryContext {
    AppState& app;
    LibraryState& lib;
    UiPort& ui;
};

}  // namespace sonorit
