#pragma once
// What the library keeps in memory besides the global paths: the list, the
// slot counter and the free IDs, the search lists and the naming rules.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>
#include <vector>

#include "library/naming_rules.h"
#include "library/track_list.h"
#include "search/search_lists.h"

namespace sonorit {

struct AppState;
class UiPort;
class DurationProbe;

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
    // Measures a track whose first frame is damaged; none in tests that do
    // not need it.
    DurationProbe* durations = nullptr;
    // Start folder of the import file dialog; "" means the music folder.
    QString Last_Import_Folder;
    // The paths of the playlist's tracks (the player's Play_File), which a
    // rename or relocate keeps pointing at the moved file; none without a
    // player.
    QStringList* Playlist_Paths = nullptr;
    // Where the record appended last starts and how long it is, so that the
    // relocation that follows an import rewrites it in place instead of
    // copying the whole Trackfile.
    struct LastRecord {
        int id = 0;
        qint64 offset = -1;
        qint64 size = 0;
    } lastRecord;
    // While a command renames or relocates many rows, each record is written
    // as its file moves, from a copy of the Trackfile kept here, so that the
    // file is read once per command and not once per row. A record whose
    // length changes goes to the journal beside the Trackfile (`pending`
    // holds what this session wrote there); the image gets it when the
    // journal is flushed into the Trackfile.
    struct RecordSession {
        bool active = false;
        bool loaded = false;
        QByteArray image;
        bool journaled = false;
        int journalFd = -1;
        QByteArray pending;
    } records;

    // The Trackfile as this program last read or wrote it, so that a change
    // made meanwhile by another program is noticed before the next one.
    struct Seen {
        bool valid = false;
        quint64 inode = 0;
        qint64 size = 0, mtime = 0;
    } seen;

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
