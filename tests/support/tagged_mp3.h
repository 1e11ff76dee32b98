#pragma once
// Real MP3 files with an ID3v2.3 tag of the fields the library lists.
#include <QString>

#include "tests/support/mp3_maker.h"

namespace sonorit::test {

struct TrackTags {
    QString artist, album, track, title, year, genre;
    bool various = false;  // TPE2 "Various Artists"
};

// The tag's text frames (ISO-8859-1) in front of LAME audio; no tag when all
// fields are empty. Empty if LAME refuses the recipe.
QByteArray taggedMp3(const TrackTags& tags, const Mp3Recipe& recipe = {});
// The same written to `path`, folders made; false if it could not be written.
bool writeTaggedMp3(const QString& path, const TrackTags& tags, const Mp3Recipe& recipe = {});

}  // namespace sonorit::test
