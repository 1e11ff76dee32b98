#pragma once
// Builds a library for a test: the .vkt file, the Trackfile and the IDfile, put
// together by hand, not by the program's writers, whose output they check.
#include <QByteArray>
#include <QMap>
#include <optional>
#include <vector>

#include "library/track_list.h"
#include "shell/app_paths.h"

namespace sonorit::test {

// Plausible values in the columns a test does not care about.
TrackRow makeTrack(const QString& artist, const QString& title, const QString& folder, const QString& filename,
                   const QString& album = "Album");
// "TRCK" and six digits, big-endian length of the text bytes plus 1, the text, NUL.
QByteArray trackRecord(int id, const QByteArray& text);
QByteArray recordText(const TrackRow& row);                    // the 13 fields joined by "|", UTF-8
QByteArray idFileBytes(const std::vector<std::int32_t>& ids);  // 4-byte little-endian integers

struct LibraryFiles {
    QString vkt, trackfile, idfile;
};

// LibraryMaker(env.paths(), env.path("Music.vkt")).track(makeTrack(...)).freeSlot().write()
struct LibraryMaker {
    LibraryMaker(AppPaths p, QString v) : paths(std::move(p)), vkt(std::move(v)) {}
    AppPaths paths;
    QString vkt;
    std::vector<std::optional<QByteArray>> texts;  // one per slot; nullopt: free, its ID in the IDfile
    QMap<QString, QString> keys;                   // overrides of [GENERAL]; a null value leaves the key out

    LibraryMaker& track(TrackRow row);  // its ID column becomes "TRACK <slot>"
    LibraryMaker& text(std::optional<QByteArray> bytes) { texts.push_back(std::move(bytes)); return *this; }
    LibraryMaker& freeSlot() { return text(std::nullopt); }
    LibraryMaker& key(const QString& name, const QString& value) { keys[name] = value; return *this; }
    // Writes the three files (named after the .vkt) and makes the folder "Main" beside the .vkt.
    LibraryFiles write() const;
};

}  // namespace sonorit::test
