#pragma once
// Builds a library on disk for a test: the .vkt file with its [GENERAL] keys,
// the Trackfile and the IDfile in the data folder. The bytes are put together
// here by hand, not by the program's writers, so that tests of those writers
// compare against an independent picture of the file.
//
//   LibraryMaker m(env.paths(), env.path("Music.vkt"));
//   m.track(makeTrack("Abba", "Waterloo", "/m/Abba", "01.mp3")).freeSlot();
//   const LibraryFiles f = m.write();
#include <QByteArray>
#include <QMap>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "library/track_list.h"
#include "shell/app_paths.h"

namespace sonorit::test {

// A track with plausible values in the columns a test does not care about.
// The "ID" column is filled in by the maker from the slot.
TrackRow makeTrack(const QString& artist, const QString& title, const QString& folder, const QString& filename,
                   const QString& album = QStringLiteral("Album"));

// The bytes of one Trackfile record: "TRCK" and six digits, big-endian length
// of the text bytes plus 1, the text, NUL.
QByteArray trackRecord(int id, const QByteArray& text);
// The 13 fields joined by "|", as UTF-8.
QByteArray recordText(const TrackRow& row);
// 4-byte little-endian integers.
QByteArray idFileBytes(const std::vector<std::int32_t>& ids);

struct LibraryFiles {
    QString vkt, trackfile, idfile, mainFolder;
};

class LibraryMaker {
public:
    LibraryMaker(const AppPaths& paths, QString vktPath);

    // The next slot holds this track; its ID column becomes "TRACK <slot>".
    LibraryMaker& track(TrackRow row);
    // The next slot holds exactly this text (UTF-8 unless given as bytes).
    LibraryMaker& text(const QByteArray& bytes);
    // The next slot is free; its ID goes to the IDfile in slot order.
    LibraryMaker& freeSlot();
    // Overrides a [GENERAL] key; a null string leaves the key out.
    LibraryMaker& key(const QString& name, const QString& value);
    // Replaces the IDfile's entries (by default the free slots).
    LibraryMaker& freeIds(std::vector<std::int32_t> ids);

    int slotCount() const { return static_cast<int>(slots_.size()); }
    // Writes the three files and creates the main folder.
    LibraryFiles write() const;

private:
    AppPaths paths_;
    QString vkt_;
    std::vector<std::optional<QByteArray>> slots_;  // nullopt: free
    std::optional<std::vector<std::int32_t>> freeIds_;
    QMap<QString, QString> keys_;
};

}  // namespace sonorit::test
