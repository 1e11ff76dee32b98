#pragma once
// PCM WAV files for tests: 16-bit, a sine on every channel.
#include <QByteArray>
#include <QString>

namespace sonorit::test {

QByteArray makeWav(double seconds, int sampleRate = 44100, int channels = 2, double toneHz = 440);
bool writeWav(const QString& path, double seconds, int sampleRate = 44100, int channels = 2);

}  // namespace sonorit::test
