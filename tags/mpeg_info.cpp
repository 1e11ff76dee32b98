#include "mpeg_info.h"

#include <cstring>

#include "tag2_header.h"

namespace sonorit {

namespace {
constexpr qint64 kSearchBlock = 4096;

// [version bits][layer bits][bitrate index] in kbit/s. Version bits: 0 MPEG
// 2.5, 1 reserved, 2 MPEG 2, 3 MPEG 1. Layer bits: 0 reserved, 1 Layer 3,
// 2 Layer 2, 3 Layer 1.
constexpr std::array<qint32, 16> kNone = {};
constexpr std::array<qint32, 16> kV1L1 = {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, 0};
constexpr std::array<qint32, 16> kV1L2 = {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 0};
constexpr std::array<qint32, 16> kV1L3 = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0};
constexpr std::array<qint32, 16> kV2L1 = {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256, 0};
constexpr std::array<qint32, 16> kV2L23 = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0};

BitrateTable makeTable()
{
    const std::array<std::array<std::array<qint32, 16>, 4>, 4> kbit = {{
        {kNone, kV2L23, kV2L23, kV2L1},
        {kNone, kNone, kNone, kNone},
        {kNone, kV2L23, kV2L23, kV2L1},
        {kNone, kV1L3, kV1L2, kV1L1},
    }};
    BitrateTable t{};
    for (int v = 0; v < 4; ++v)
        for (int l = 0; l < 4; ++l)
            for (int i = 0; i < 16; ++i)
                t[v][l][i] = kbit[v][l][i] * 1000;
    return t;
}

// The factor of the sampling rates: 4 for MPEG 1, 2 for MPEG 2, 1 for 2.5.
int versionFactor(int b2)
{
    if (b2 >= 226 && b2 <= 231)
        return 1;
    if (b2 >= 242 && b2 <= 247)
        return 2;
    return 4;
}

// Frame size by the program's rule: Layer 1 divides by 2, not by the
// format's 4 x slot, so a Layer 1 walk takes long steps.
int frameSize(int layer, int samples, qint32 bitrate, qint32 sampleRate, int padding)
{
    if (sampleRate <= 0)
        return 0;
    const qint64 base = qint64(samples) * bitrate / sampleRate;
    return static_cast<int>((layer == 1 ? base / 2 : base / 8) + padding);
}

struct Decoded {
    int versionBits, layerBits, layer, factor, samples;
    qint32 bitrate, sampleRate;
};

Decoded decode(int b2, int b3)
{
    Decoded d{};
    d.versionBits = (b2 >> 3) & 3;
    d.layerBits = (b2 >> 1) & 3;
    d.layer = 4 - d.layerBits;
    d.factor = d.versionBits == 3 ? 4 : d.versionBits == 2 ? 2 : 1;
    d.bitrate = Mpeg_Bitrate_Table()[d.versionBits][d.layerBits][b3 >> 4];
    static constexpr std::array<qint32, 4> kBaseRate = {11025, 12000, 8000, 0};
    d.sampleRate = kBaseRate[(b3 >> 2) & 3] * d.factor;
    d.samples = d.layer == 1 ? 384 : d.layer == 2 ? 1152 : (d.factor == 4 ? 1152 : 576);
    return d;
}

quint32 bigEndian32(ByteSource& src, qint64 offset)
{
    unsigned char b[4] = {};
    src.readAt(offset, reinterpret_cast<char*>(b), 4);
    return (quint32(b[0]) << 24) | (quint32(b[1]) << 16) | (quint32(b[2]) << 8) | b[3];
}

void describe(ByteSource& src, qint64 position, int b2, int b3, int b4, Mpeg_Info& info)
{
    const int v = versionFactor(b2);
    info.Mpeg = v == 1 ? QStringLiteral("MPEG 2.5") : v == 2 ? QStringLiteral("MPEG 2.0") : QStringLiteral("MPEG 1.0");
    const int layerBits = (b2 >> 1) & 3;
    info.Layer = QStringLiteral("Layer %1").arg(4 - layerBits);
    info.CRC = (b2 & 1) ? QStringLiteral("No") : QStringLiteral("Yes");
    // The display rule of the program gives the same numbers as the table.
    const int versionBits = (b2 >> 3) & 3;
    info.Bitrate = QString::number(Mpeg_Bitrate_Table()[versionBits][layerBits][b3 >> 4] / 1000)
                   + QStringLiteral(" Kbit");
    const int f = b3 & 15;
    const qint32 base = f <= 3 ? 11025 : f <= 7 ? 12000 : 8000;
    info.Frequency = QString::number(base * v) + QStringLiteral(" Hz");

    const int mode = b4 >> 6;
    const int vbrOffset = v == 4 ? (mode < 3 ? 36 : 21) : (mode < 3 ? 21 : 13);
    const qint64 at = position - 1 + vbrOffset;
    const QByteArray mark = src.bytesAt(at, 4);
    if (mark == "Xing" || mark == "Info") {
        // A constant-rate "Info" header counts as variable rate all the same.
        info.VBR = true;
        info.Xing_Flags = static_cast<quint8>(qMax(0, src.byteAt(at + 7)));
        info.Xing_Frames = bigEndian32(src, at + 8);
        info.Bitrate += QStringLiteral(" (VBR)");
    }
    static const std::array<QString, 4> kChannels = {QStringLiteral(" Stereo"), QStringLiteral(" Joint Stereo"),
                                                     QStringLiteral(" Dual Channel"), QStringLiteral(" Mono")};
    info.Channels = kChannels[mode];
    info.Copyright = (b4 & 8) ? QStringLiteral(" Yes") : QStringLiteral(" No");
    info.Original = (b4 & 4) ? QStringLiteral(" Yes") : QStringLiteral(" No");
    static const std::array<QString, 4> kEmphasis = {QStringLiteral(" None"), QStringLiteral(" 50/15 microsec"),
                                                     QStringLiteral(" invalid"), QStringLiteral(" CCIT J.17")};
    info.Emphasis = kEmphasis[b4 & 3];
}

template <typename Fn>
auto withFile(const QString& path, Fn fn, decltype(fn(std::declval<ByteSource&>())) fallback)
{
    FileSource src(path);
    return src.isOpen() ? fn(src) : fallback;
}
}  // namespace

const BitrateTable& Mpeg_Bitrate_Table()
{
    static const BitrateTable table = makeTable();
    return table;
}

bool Frame_Second_Byte_Ok(int b2)
{
    return (b2 >= 226 && b2 <= 231) || (b2 >= 242 && b2 <= 247) || (b2 >= 250 && b2 <= 255);
}

bool Frame_Third_Byte_Ok(int b3)
{
    const int high = b3 >> 4;
    return b3 >= 0 && high != 0 && high != 15 && ((b3 >> 2) & 3) != 3;
}

qint64 Read_Mpeg_Info(ByteSource& src, Mpeg_Info& info, qint64 position)
{
    info = Mpeg_Info{};
    const qint64 length = src.size();
    if (position < 1)
        position = 1;
    char block[kSearchBlock];
    qint64 p = position;
    qint64 found = 0;
    do {
        const qint64 got = src.readAt(p - 1, block, kSearchBlock);
        const char* end = block + got;
        for (const char* b = block; !found && (b = static_cast<const char*>(std::memchr(b, 255, end - b)));) {
            // The following bytes come from the file by position, so a header
            // may straddle the end of the block.
            const qint64 at = p + (b - block);
            if (Frame_Second_Byte_Ok(src.byteAt(at)) && Frame_Third_Byte_Ok(src.byteAt(at + 1)))
                found = at;
            ++b;
        }
        if (found)
            break;
        p += kSearchBlock;
    } while (p <= length - 24);
    if (!found)
        return 0;

    const int b2 = src.byteAt(found);
    const int b3 = src.byteAt(found + 1);
    const int b4 = qMax(0, src.byteAt(found + 2));
    info.Valid = true;
    describe(src, found, b2, b3, b4, info);
    info.File_Length = static_cast<qint32>(length);
    info.Size = QString::number(length) + QStringLiteral(" bytes");
    return found;
}

qint64 Read_Mpeg_Info(const QString& path, Mpeg_Info& info, qint64 position)
{
    info = Mpeg_Info{};
    return withFile(path, [&](ByteSource& s) { return Read_Mpeg_Info(s, info, position); }, qint64(0));
}

qint64 Find_First_Frame(ByteSource& src, Mpeg_Info& info)
{
    return Read_Mpeg_Info(src, info, Audio_Search_Start(src));
}

Mpeg_Frame Read_Mpeg_Frame(ByteSource& src, qint64 position)
{
    Mpeg_Frame f;
    if (position < 1)
        return f;
    unsigned char h[4] = {};
    const qint64 got = src.readAt(position - 1, reinterpret_cast<char*>(h), 4);
    if (got < 3 || h[0] != 255 || !Frame_Second_Byte_Ok(h[1]) || !Frame_Third_Byte_Ok(h[2]))
        return f;
    const Decoded d = decode(h[1], h[2]);
    f.Valid = true;
    f.Version = d.factor == 4 ? 1 : d.factor == 2 ? 2 : 3;
    f.Layer = d.layer;
    f.CRC = !(h[1] & 1);
    f.Bitrate_Index = h[2] >> 4;
    f.Bitrate = d.bitrate;
    f.Sample_Rate = d.sampleRate;
    f.Samples_Per_Frame = d.samples;
    f.Padding = (h[2] >> 1) & 1;
    f.Private = h[2] & 1;
    f.Channel_Mode = h[3] >> 6;
    f.Mode_Extension = (h[3] >> 4) & 3;
    f.Copyright = h[3] & 8;
    f.Original = h[3] & 4;
    f.Emphasis = h[3] & 3;
    f.Frame_Size = frameSize(d.layer, d.samples, d.bitrate, d.sampleRate, f.Padding);
    return f;
}

Mpeg_Frame Read_Mpeg_Frame(const QString& path, qint64 position)
{
    return withFile(path, [&](ByteSource& s) { return Read_Mpeg_Frame(s, position); }, Mpeg_Frame{});
}

qint64 Count_Mpeg_Frames(ByteSource& src)
{
    if (!src.countedFrames)
        src.countedFrames = Walk_Mpeg_Frames(src);
    return *src.countedFrames;
}

qint64 Walk_Mpeg_Frames(ByteSource& src)
{
    Mpeg_Info info;
    qint64 p = Find_First_Frame(src, info);
    if (p == 0)
        return 0;
    const qint64 length = src.size();
    qint64 count = 0;
    while (p < length) {
        unsigned char h[4] = {};
        src.readAt(p - 1, reinterpret_cast<char*>(h), 4);
        if (h[0] != 255 || !Frame_Second_Byte_Ok(h[1]) || !Frame_Third_Byte_Ok(h[2]))
            break;
        const Decoded d = decode(h[1], h[2]);
        // Every accepted header gives a size of at least 24 bytes, so the
        // walk always moves on.
        p += frameSize(d.layer, d.samples, d.bitrate, d.sampleRate, (h[2] >> 1) & 1);
        ++count;
    }
    return count;
}

qint64 Count_Mpeg_Frames(const QString& path)
{
    return withFile(path, [](ByteSource& s) { return Count_Mpeg_Frames(s); }, qint64(0));
}

float Seconds_Per_Frame(ByteSource& src)
{
    Mpeg_Info info;
    const qint64 p = Find_First_Frame(src, info);
    if (p == 0)
        return 0;
    const Mpeg_Frame f = Read_Mpeg_Frame(src, p);
    if (!f.Valid || f.Sample_Rate == 0)
        return 0;
    return static_cast<float>(f.Samples_Per_Frame) / static_cast<float>(f.Sample_Rate);
}

float Seconds_Per_Frame(const QString& path)
{
    return withFile(path, [](ByteSource& s) { return Seconds_Per_Frame(s); }, 0.0f);
}

bool Is_Mpeg(ByteSource& src)
{
    Mpeg_Info info;
    return Find_First_Frame(src, info) != 0;
}

bool Is_Mpeg(const QString& path)
{
    return withFile(path, [](ByteSource& s) { return Is_Mpeg(s); }, false);
}

bool Is_Mpeg1_Layer3(ByteSource& src)
{
    Mpeg_Info info;
    Find_First_Frame(src, info);
    return info.Mpeg == QLatin1String("MPEG 1.0") && info.Layer == QLatin1String("Layer 3");
}

bool Is_Mpeg1_Layer3(const QString& path)
{
    return withFile(path, [](ByteSource& s) { return Is_Mpeg1_Layer3(s); }, false);
}

}  // namespace sonorit
