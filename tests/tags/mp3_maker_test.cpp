// The LAME maker is the ground the tag tests stand on: its files must start
// with a frame, carry the header they were asked for and hold no tag.
#include <gtest/gtest.h>

#include "tests/support/mp3_maker.h"

using sonorit::test::makeMp3;
using sonorit::test::Mp3Spec;

namespace {
quint32 bigEndian32(const QByteArray& b, int at)
{
    return quint32(quint8(b[at])) << 24 | quint32(quint8(b[at + 1])) << 16 | quint32(quint8(b[at + 2])) << 8
        | quint8(b[at + 3]);
}
}  // namespace

TEST(Mp3Maker, HeadersFollowTheRequest)
{
    struct Row {
        Mp3Spec spec;
        quint8 secondByte;     // version and layer bits, no CRC
        int vbrHeaderOffset;   // where "Xing"/"Info" stands behind the sync
        const char* vbrTag;
        int samplesPerFrame;
    };
    const Row rows[] = {
        {{}, 0xFB, 36, "Info", 1152},
        {{1, 44100, 2, 160, true, 4}, 0xFB, 36, "Xing", 1152},
        {{1, 44100, 1, 64}, 0xFB, 21, "Info", 1152},
        {{1, 22050, 2, 64}, 0xF3, 21, "Info", 576},
        {{1, 22050, 1, 32, true, 9}, 0xF3, 13, "Xing", 576},
    };
    for (const Row& r : rows) {
        const QByteArray mp3 = makeMp3(r.spec);
        ASSERT_GT(mp3.size(), 1000);
        EXPECT_EQ(quint8(mp3[0]), 0xFF);
        EXPECT_EQ(quint8(mp3[1]), r.secondByte);
        EXPECT_EQ(mp3.mid(4 + r.vbrHeaderOffset - 4, 4), QByteArray(r.vbrTag));
        // The frame count covers the whole sine: encoder delay and padding
        // add at most a few frames.
        const double frames = bigEndian32(mp3, r.vbrHeaderOffset + 8);
        const double expected = r.spec.seconds * r.spec.sampleRate / r.samplesPerFrame;
        EXPECT_GE(frames, expected);
        EXPECT_LE(frames, expected + 4);
        EXPECT_FALSE(mp3.startsWith("ID3"));
        EXPECT_NE(mp3.right(128).left(3), QByteArray("TAG"));
    }
}

TEST(Mp3Maker, WithoutXingTheFirstFrameIsAudioAndSpecsAreCachedApart)
{
    Mp3Spec plain;
    plain.writeXing = false;
    const QByteArray a = makeMp3(plain);
    EXPECT_NE(a.mid(36, 4), QByteArray("Info"));
    EXPECT_EQ(a, makeMp3(plain));
    Mp3Spec longer = plain;
    longer.seconds = 2;
    EXPECT_GT(makeMp3(longer).size(), a.size() * 3 / 2);
}
