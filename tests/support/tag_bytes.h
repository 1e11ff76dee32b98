#pragma once
// Byte builders for tag fixtures, so that a fixture reads like the layout it tests.
#include <QByteArray>
#include <QString>
#include <QStringEncoder>

#include "qt_gtest_print.h"

namespace sonorit::test {

inline QByteArray be32(quint32 v)
{
    const char b[] = {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
    return QByteArray(b, 4);
}

// A tag header whose size (seven bits a byte) covers `body`, then the body.
inline QByteArray tag(const QByteArray& body, char version = 3, char flags = 0)
{
    const quint32 n = quint32(body.size());
    const char h[] = {'I', 'D', '3', version, 0, flags, char(n >> 21 & 0x7F), char(n >> 14 & 0x7F),
                      char(n >> 7 & 0x7F), char(n & 0x7F)};
    return QByteArray(h, 10) + body;
}

inline QByteArray frame(const char* id, const QByteArray& data, quint16 flags = 0)
{
    return QByteArray(id, 4) + be32(data.size()) + char(flags >> 8) + char(flags) + data;
}

// A v2.2 frame: three-letter id, three-byte size.
inline QByteArray frame22(const char* id, const QByteArray& data)
{
    const quint32 n = quint32(data.size());
    return QByteArray(id, 3) + char(n >> 16) + char(n >> 8) + char(n) + data;
}

inline QByteArray textFrame(const char* id, const QByteArray& text) { return frame(id, '\0' + text); }

inline QByteArray commFrame(const QByteArray& language, const QByteArray& description, const QByteArray& text)
{
    return frame("COMM", '\0' + language + description + '\0' + text);
}

inline QByteArray apicFrame(const QByteArray& mime, char type, const QByteArray& image)
{
    return frame("APIC", '\0' + mime + '\0' + type + '\0' + image);
}

// UTF-16 units behind a byte order mark, no terminator.
inline QByteArray utf16(const QString& text, bool bigEndian)
{
    using C = QStringConverter;
    return QStringEncoder(bigEndian ? C::Utf16BE : C::Utf16LE, C::Flag::WriteBom)(text);
}

// An MPEG audio frame of `size` bytes: the header, `body`, then filler without a sync byte.
inline QByteArray mpegFrame(quint8 b2, quint8 b3, quint8 b4, int size, const QByteArray& body = {})
{
    return (QByteArray("\xFF", 1) + char(b2) + char(b3) + char(b4) + body).leftJustified(size, '\x11', true);
}

// MPEG 1 Layer 3, 128 kbit/s, 44100 Hz, no padding, stereo: 417 bytes.
inline QByteArray mp3Frame() { return mpegFrame(0xFB, 0x90, 0x00, 417); }

inline const QByteArray kTag1 = QByteArray("TAG").leftJustified(128, '\0');

}  // namespace sonorit::test
