// The search for the first audio frame, the two frame records and the walk,
// on assembled headers.
#include <gtest/gtest.h>

#include "tags/mpeg_info.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
qint64 firstFrame(const QByteArray& file)
{
    Mpeg_Info info;
    MemorySource src(file);
    return Find_First_Frame(src, info);
}

Mpeg_Info infoAt8(const QByteArray& header)
{
    Mpeg_Info info;
    MemorySource src(QByteArray(7, 'j') + header + QByteArray(600, '\0'));
    EXPECT_EQ(Read_Mpeg_Info(src, info, 1), 8);
    return info;
}
}  // namespace

TEST(MpegSearch, FindsTheFirstHeaderBehindTagAndJunk)
{
    const QByteArray tagBytes = tag(textFrame("TIT2", "x"));
    const QByteArray junk = repeat(QByteArray("\xFF\x00\xFF\xFB\x00\xFF\xFB\xF0junk", 10), 100);
    EXPECT_EQ(firstFrame(tagBytes + junk + mp3Frame()), tagBytes.size() + junk.size() + 1);

    // Bitrate index 0 and 15, reserved frequency, version and layers, no sync.
    for (const char* refused : {"\xFF\xFB\x00", "\xFF\xFB\xF0", "\xFF\xFB\x9C", "\xFF\xEB\x90", "\xFF\xF9\x90",
                                "\xFF\xE1\x90", "\xFE\xFB\x90"})
        EXPECT_EQ(firstFrame(QByteArray(refused, 3) + QByteArray(101, '\0') + mp3Frame()), 105) << refused;

    // A header may straddle the end of a 4096-byte block; blocks are read
    // while their start is not beyond the length less 24.
    EXPECT_EQ(firstFrame(QByteArray(4094, '\0') + mp3Frame()), 4095);
    EXPECT_EQ(firstFrame(QByteArray(4100, '\0') + mp3Frame().left(30)), 4101);
    EXPECT_EQ(firstFrame(QByteArray(4100, '\0') + mp3Frame().left(19)), 0);
    // A tag of another version is searched through; a tag alone has no frame.
    EXPECT_EQ(firstFrame(tag(QByteArray("\xFF\xFB\x90\x00", 4), 4) + mp3Frame()), 11);
    EXPECT_EQ(firstFrame(tagBytes), 0);
}

TEST(MpegSearch, DescribesTheFrameForTheScreen)
{
    struct Row {
        QByteArray header;
        QStringList texts;  // Mpeg Layer Bitrate Frequency Channels CRC Copyright Original Emphasis
    };
    const Row rows[] = {
        {"\xFF\xFB\x90\x44", {"MPEG 1.0", "Layer 3", "128 Kbit", "44100 Hz", " Joint Stereo", "No", " No", " Yes", " None"}},
        {"\xFF\xF7\xD0\x82", {"MPEG 2.0", "Layer 1", "224 Kbit", "22050 Hz", " Dual Channel", "No", " No", " No", " invalid"}},
        {"\xFF\xFA\xE4\xC9", {"MPEG 1.0", "Layer 3", "320 Kbit", "48000 Hz", " Mono", "Yes", " Yes", " No", " 50/15 microsec"}},
        {"\xFF\xFF\xE0\x03", {"MPEG 1.0", "Layer 1", "448 Kbit", "44100 Hz", " Stereo", "No", " No", " No", " CCIT J.17"}},
        {"\xFF\xE5\x74\x40", {"MPEG 2.5", "Layer 2", "56 Kbit", "12000 Hz", " Joint Stereo", "No", " No", " No", " None"}},
    };
    for (const Row& r : rows) {
        const Mpeg_Info i = infoAt8(r.header);
        EXPECT_EQ(QStringList({i.Mpeg, i.Layer, i.Bitrate, i.Frequency, i.Channels, i.CRC, i.Copyright, i.Original,
                               i.Emphasis}),
                  r.texts);
        EXPECT_EQ(i.Size, "611 bytes");
        EXPECT_FALSE(i.VBR);
    }
}

TEST(MpegSearch, XingAndInfoHeadersStandByVersionAndChannelMode)
{
    struct Row {
        quint8 b2, b4;
        int offset;
        const char* mark;
    };
    const Row rows[] = {{0xFB, 0x00, 36, "Xing"}, {0xFB, 0xC0, 21, "Info"}, {0xF3, 0x40, 21, "Xing"}, {0xE3, 0xC0, 13, "Info"}};
    for (const Row& r : rows) {
        for (int shift : {0, 1}) {  // one byte off it is not seen
            const QByteArray body = QByteArray(r.offset + shift - 4, '\0') + r.mark + be32(0x0F) + be32(0x01020304);
            Mpeg_Info info;
            MemorySource src(mpegFrame(r.b2, 0x50, r.b4, 417, body));
            ASSERT_EQ(Read_Mpeg_Info(src, info, 1), 1);
            EXPECT_EQ(info.VBR, shift == 0) << r.offset;
            EXPECT_EQ(info.Bitrate.endsWith(" Kbit (VBR)"), shift == 0);
            EXPECT_EQ(info.Xing_Flags, shift == 0 ? 0x0F : 0);
            EXPECT_EQ(info.Xing_Frames, shift == 0 ? 0x01020304u : 0u);
        }
    }
}

TEST(MpegFrame, StrictHeaderAndTheProgramsFrameSize)
{
    struct Row {
        QByteArray bytes;
        std::array<int, 6> versionLayerSamplesSizeBitrateRate;
    };
    const Row rows[] = {
        {"\xFF\xFB\x90\x64", {1, 3, 1152, 417, 128000, 44100}},
        {"\xFF\xFB\x92\x64", {1, 3, 1152, 418, 128000, 44100}},  // padding
        {"\xFF\xF3\x84\xC0", {2, 3, 576, 192, 64000, 24000}},
        {"\xFF\xE3\x18\x00", {3, 3, 576, 72, 8000, 8000}},
        {"\xFF\xFD\x18\x82", {1, 2, 1152, 144, 32000, 32000}},
        {"\xFF\xFF\xE0\x03", {1, 1, 384, 1950, 448000, 44100}},  // Layer 1 divides by 2
    };
    for (const Row& r : rows) {
        MemorySource src("ab" + r.bytes);
        const Mpeg_Frame f = Read_Mpeg_Frame(src, 3);
        EXPECT_TRUE(f.Valid);
        EXPECT_EQ((std::array<int, 6>{f.Version, f.Layer, f.Samples_Per_Frame, f.Frame_Size, f.Bitrate, f.Sample_Rate}),
                  r.versionLayerSamplesSizeBitrateRate);
        EXPECT_FALSE(Read_Mpeg_Frame(src, 2).Valid);
    }
}

TEST(MpegWalk, CountsUntilTheFirstThingThatIsNotAFrame)
{
    const QByteArray tag1 = QByteArray("TAG").leftJustified(128, ' ');
    MemorySource src(tag(textFrame("TIT2", "x")) + repeat(mp3Frame() + mpegFrame(0xFB, 0x92, 0, 418), 5) + tag1);
    EXPECT_EQ(Count_Mpeg_Frames(src), 10);
    EXPECT_FLOAT_EQ(Seconds_Per_Frame(src), 1152.0f / 44100.0f);
    EXPECT_TRUE(Is_Mpeg1_Layer3(src));
    MemorySource junk(repeat(mp3Frame(), 3) + "junk" + repeat(mp3Frame(), 3));
    EXPECT_EQ(Count_Mpeg_Frames(junk), 3);
    // Layer 1 steps by the program's long frames, 1950 bytes where the
    // format has 487: a true Layer 1 stream counts one frame.
    MemorySource layer1(repeat(mpegFrame(0xFF, 0xE0, 0, 487), 8));
    EXPECT_EQ(Count_Mpeg_Frames(layer1), 1);
    MemorySource longLayer1(repeat(mpegFrame(0xFF, 0xE0, 0, 1950), 3));
    EXPECT_EQ(Count_Mpeg_Frames(longLayer1), 3);

    MemorySource none(QByteArray(1000, '\0'));
    EXPECT_EQ(Count_Mpeg_Frames(none), 0);
    EXPECT_EQ(Seconds_Per_Frame(none), 0.0f);
    EXPECT_FALSE(Is_Mpeg(none));
    MemorySource layer2(mpegFrame(0xFD, 0x18, 0, 144));
    EXPECT_TRUE(Is_Mpeg(layer2));
    EXPECT_FALSE(Is_Mpeg1_Layer3(layer2));
}
