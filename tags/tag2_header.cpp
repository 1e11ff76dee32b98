#include "tag2_header.h"

namespace sonorit {

namespace {
quint32 bigEndian(const unsigned char* b, int n)
{
    quint32 v = 0;
    for (int i = 0; i < n; ++i)
        v = (v << 8) | b[i];
    return v;
}
}  // namespace

qint64 Tag2Header::firstFramePosition() const
{
    if (!(Flags & 0x40))
        return 11;
    // The CRC flag is the top bit of the first extended-flags byte.
    return (Ext_Flags & 0x8000) ? 25 : 21;
}

Tag2Header Read_Tag2_Header(ByteSource& src)
{
    // Read in one piece; what the file lacks stays zero, as a short record
    // read did in the program.
    unsigned char b[24] = {};
    src.readAt(0, reinterpret_cast<char*>(b), 24);
    Tag2Header h;
    h.Identifier = QByteArray(reinterpret_cast<const char*>(b), 3);
    h.Version = b[3];
    h.Revision = b[4];
    h.Flags = b[5];
    // Seven bits of each byte; the top bits are not masked, as the program
    // never did.
    h.Size = (quint32(b[6]) << 21) + (quint32(b[7]) << 14) + (quint32(b[8]) << 7) + b[9];
    h.Ext_Size = bigEndian(b + 10, 4);
    h.Ext_Flags = static_cast<quint16>(bigEndian(b + 14, 2));
    h.Ext_Padding = bigEndian(b + 16, 4);
    h.Ext_CRC = bigEndian(b + 20, 4);
    return h;
}

std::optional<Tag2Header> Find_Tag2(ByteSource& src)
{
    Tag2Header h = Read_Tag2_Header(src);
    if (!h.isV23())
        return std::nullopt;
    return h;
}

bool Has_Tag2(ByteSource& src) { return Find_Tag2(src).has_value(); }

bool Has_Tag2(const QString& path)
{
    FileSource src(path);
    return src.isOpen() && Has_Tag2(src);
}

qint64 Audio_Search_Start(ByteSource& src)
{
    const auto h = Find_Tag2(src);
    return h ? h->End() : 1;
}

std::optional<FrameHeader> Read_Frame_Header(ByteSource& src, qint64 position)
{
    unsigned char b[10];
    if (position < 1 || !src.readExact(position - 1, reinterpret_cast<char*>(b), 10))
        return std::nullopt;
    FrameHeader f;
    f.Frame_ID = QByteArray(reinterpret_cast<const char*>(b), 4);
    f.Frame_Size = bigEndian(b + 4, 4);
    f.Frame_Flags = static_cast<quint16>(bigEndian(b + 8, 2));
    return f;
}

}  // namespace sonorit
