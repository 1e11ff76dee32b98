#pragma once
// Byte builders for tag fixtures: each test assembles the exact bytes of the
// case it is about, so that a fixture reads like the layout it tests.
#include <QByteArray>
#include <QString>

#include "qt_gtest_print.h"

namespace sonorit::test {

inline QByteArray be32(quint32 v)
{
    QByteArray b(4, '\0');
    for (int i = 0; i < 4; ++i)
        b[i] = static_cast<char>((v >> (24 - 8 * i)) & 0xFF);
    return b;
}

// The 28-bit size of a tag header: seven bits in each byte.
inline QByteArray synchsafe(quint32 v)
{
    QByteArray b(4, '\0');
    for (int i = 0; i < 4; ++i)
        b[i] = static_cast<char>((v >> (21 - 7 * i)) & 0x7F);
    return b;
}

// A tag header whose size covers `body`, followed by it.
inline QByteArray tag(const QByteArray& body, char version = 3, char flags = 0)
{
    return QByteArray("ID3") + version + '\0' + flags + synchsafe(body.size()) + body;
}

inline QByteArray frame(const char* id, const QByteArray& data, quint16 flags = 0)
{
    return QByteArray(id, 4) + be32(data.size()) + char(flags >> 8) + char(flags & 0xFF) + data;
}

// A text frame of encoding 0.
inline QByteArray textFrame(const char* id, const QByteArray& text)
{
    return frame(id, '\0' + text);
}

// UTF-16 units with a byte order mark, no terminator.
inline QByteArray utf16(const QString& text, bool bigEndian)
{
    QByteArray b = bigEndian ? QByteArray("\xFE\xFF", 2) : QByteArray("\xFF\xFE", 2);
    for (const QChar c : text) {
        const char hi = static_cast<char>(c.unicode() >> 8), lo = static_cast<char>(c.unicode() & 0xFF);
        b += bigEndian ? hi : lo;
        b += bigEndian ? lo : hi;
    }
    return b;
}

inline QByteArray commFrame(const QByteArray& language, const QByteArray& description, const QByteArray& text)
{
    return frame("COMM", '\0' + language + description + '\0' + text);
}

inline QByteArray apicFrame(const QByteArray& mime, char pictureType, const QByteArray& image,
                            const QByteArray& description = {})
{
    return frame("APIC", '\0' + mime + '\0' + pictureType + description + '\0' + image);
}

// An MPEG audio frame of `size` bytes: the header bytes, then filler that
// holds no sync byte.
inline QByteArray mpegFrame(quint8 b2, quint8 b3, quint8 b4, int size, const QByteArray& body = {})
{
    QByteArray f = QByteArray("\xFF", 1) + char(b2) + char(b3) + char(b4) + body;
    return f.leftJustified(size, '\x11', true);
}

// MPEG 1 Layer 3, 128 kbit/s, 44100 Hz, no padding, stereo: 417 bytes.
inline QByteArray mp3Frame(quint8 b4 = 0x00) { return mpegFrame(0xFB, 0x90, b4, 417); }

inline QByteArray repeat(const QByteArray& b, int times)
{
    QByteArray out;
    for (int i = 0; i < times; ++i)
        out += b;
    return out;
}

}  // namespace sonorit::test
