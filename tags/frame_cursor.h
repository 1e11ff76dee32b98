#pragma once
// Reads the data of one frame forward from a 1-based file position and counts
// the bytes it took, since several frame layouts size their last part by
// what came before. Reads never pass the end of the source: there a byte
// reads as missing and a string as ended.
#include <QByteArray>
#include <QString>

#include "byte_source.h"
#include "shell/codepage.h"

namespace sonorit {

class FrameCursor {
public:
    FrameCursor(ByteSource& src, qint64 position) : src_(src), offset_(position - 1) {}

    qint64 consumed() const { return consumed_; }

    // The byte `ahead` places after the next one, without taking it; -1
    // behind the end of the source.
    int peek(qint64 ahead = 0) { return src_.byteAt(offset_ + consumed_ + ahead); }

    // The next byte, or -1 at the end of the source.
    int byte()
    {
        if (next_ == filled_ && !refill())
            return -1;
        ++consumed_;
        return static_cast<unsigned char>(buffer_[next_++]);
    }

    // Bytes up to a zero byte, which is consumed but not returned.
    QByteArray bytesToZero()
    {
        QByteArray out;
        for (int b = byte(); b > 0; b = byte())
            out += static_cast<char>(b);
        return out;
    }

    // One 16-bit unit; -1 at the end of the source.
    int unit(bool bigEndian)
    {
        const int first = byte();
        const int second = byte();
        if (first < 0 || second < 0)
            return -1;
        return bigEndian ? (first << 8) | second : (second << 8) | first;
    }

    // Units up to a zero unit as text. A unit above 255 has no character in
    // the single-byte page: the text fails and ok turns false.
    QString unitsToZero(bool bigEndian, bool& ok)
    {
        QByteArray bytes;
        for (int u = unit(bigEndian); u > 0; u = unit(bigEndian)) {
            if (u > 255)
                ok = false;
            bytes += static_cast<char>(u);
        }
        return fromCp1252(bytes);
    }

    // A byte order mark: a first byte below 255 means big-endian units.
    bool readByteOrderMark()
    {
        const int first = byte();
        byte();
        return first < 255;
    }

private:
    // Strings up to a terminator are read a byte at a time; a chunk behind
    // them keeps that from being a call into the source per byte.
    bool refill()
    {
        filled_ = src_.readAt(offset_ + consumed_, buffer_, sizeof buffer_);
        next_ = 0;
        return filled_ > 0;
    }

    ByteSource& src_;
    qint64 offset_;
    qint64 consumed_ = 0;
    char buffer_[256];
    qint64 filled_ = 0;
    qint64 next_ = 0;
};

}  // namespace sonorit
