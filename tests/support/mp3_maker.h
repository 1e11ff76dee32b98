#pragma once
// Real MP3 audio for tests, encoded by LAME from a sine. Identical requests
// are served from memory, so a test may ask for the same file many times.
#include <QByteArray>
#include <QString>

namespace sonorit::test {

struct Mp3Recipe {
    double seconds = 1;
    int sampleRate = 44100;  // kept as it is: LAME may not resample
    int channels = 2;
    int bitrateKbps = 128;   // constant rate; with vbr the upper limit
    bool vbr = false;
    int vbrQuality = 4;      // 0 (best) to 9
    bool writeXing = true;   // "Xing" (VBR) or "Info" (CBR) header in the first frame,
                             // where the frame can hold it (not at 48 kbit/s and below at 22 kHz)
    double toneHz = 440;

    bool operator<(const Mp3Recipe& o) const;
};

// The encoded audio with no tag of any kind; empty if LAME refuses the recipe.
QByteArray makeMp3(const Mp3Recipe& recipe = {});

// Writes makeMp3(recipe) to `path`; false if the file could not be written.
bool writeMp3(const QString& path, const Mp3Recipe& recipe = {});

}  // namespace sonorit::test
