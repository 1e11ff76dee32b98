#pragma once
// The ID3v2 tag header at the start of a file and the 10-byte frame header.
// Positions are 1-based file positions, as everywhere in the tag engine.
#include <QByteArray>
#include <QString>
#include <optional>

#include "byte_source.h"

namespace sonorit {

// Read in one piece of 24 bytes from position 1; bytes the file does not
// have read as zero. Ext_* only mean something when Flags has 0x40.
struct Tag2Header {
    QByteArray Identifier;  // 3 bytes
    quint8 Version = 0;
    quint8 Revision = 0;
    quint8 Flags = 0;
    quint32 Size = 0;  // 28 bits, seven in each byte; excludes the first 10 bytes
    quint32 Ext_Size = 0;
    quint16 Ext_Flags = 0;
    quint32 Ext_Padding = 0;
    quint32 Ext_CRC = 0;

    bool isV23() const { return Identifier == "ID3" && Version == 3; }
    // 11; 21 behind an extended header; 25 when that also carries a CRC.
    qint64 firstFramePosition() const;
    // The position behind the tag, where the audio search starts.
    qint64 End() const { return qint64(Size) + 11; }
};

struct FrameHeader {
    QByteArray Frame_ID;  // 4 bytes as they stand
    quint32 Frame_Size = 0;  // big-endian, all 8 bits; excludes the 10 header bytes
    quint16 Frame_Flags = 0;
};

// The header record at position 1, whatever it holds.
Tag2Header Read_Tag2_Header(ByteSource& src);
// The header when it is an ID3v2.3 tag; a tag of another version is no tag.
std::optional<Tag2Header> Find_Tag2(ByteSource& src);
bool Has_Tag2(ByteSource& src);
bool Has_Tag2(const QString& path);

// Where the search for the first audio frame starts: End of a v2.3 tag, else
// 1. A tag of another version is searched through.
qint64 Audio_Search_Start(ByteSource& src);

// The frame header at the position; nothing when fewer than 10 bytes are
// there, which ends a walk as if the tag ended.
std::optional<FrameHeader> Read_Frame_Header(ByteSource& src, qint64 position);

}  // namespace sonorit
