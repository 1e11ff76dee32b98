#include "wav_maker.h"

#include <QFile>
#include <QtEndian>
#include <cmath>

namespace sonorit::test {

namespace {
void put16(QByteArray& b, quint16 v)
{
    char raw[2];
    qToLittleEndian(v, raw);
    b.append(raw, 2);
}
void put32(QByteArray& b, quint32 v)
{
    char raw[4];
    qToLittleEndian(v, raw);
    b.append(raw, 4);
}
}  // namespace

QByteArray makeWav(double seconds, int sampleRate, int channels, double toneHz)
{
    const quint32 frames = quint32(seconds * sampleRate);
    const quint32 dataBytes = frames * channels * 2;
    QByteArray b;
    b.reserve(int(44 + dataBytes));
    b.append("RIFF", 4);
    put32(b, 36 + dataBytes);
    b.append("WAVEfmt ", 8);
    put32(b, 16);
    put16(b, 1);  // PCM
    put16(b, quint16(channels));
    put32(b, quint32(sampleRate));
    put32(b, quint32(sampleRate * channels * 2));
    put16(b, quint16(channels * 2));
    put16(b, 16);
    b.append("data", 4);
    put32(b, dataBytes);
    for (quint32 i = 0; i < frames; ++i) {
        const auto sample = qint16(std::lround(8000 * std::sin(2 * M_PI * toneHz * i / sampleRate)));
        for (int c = 0; c < channels; ++c)
            put16(b, quint16(sample));
    }
    return b;
}

bool writeWav(const QString& path, double seconds, int sampleRate, int channels)
{
    QFile f(path);
    const QByteArray bytes = makeWav(seconds, sampleRate, channels);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

}  // namespace sonorit::test
