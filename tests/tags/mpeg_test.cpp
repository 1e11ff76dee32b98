// The audio of a file: its first frame, the walk, the labels, the strip, the length.
#include "fixtures.h"
#include "platform/gstreamer/gst_duration_probe.h"
#include "tags/strip.h"
#include "tags/track_seconds.h"

using namespace sonorit;
using namespace sonorit::test;

// Under the sanitizer build: what GStreamer's decoders leave behind by design,
// in libraries without frame pointers, so that only the library names it.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libglib-2.0.so\nleak:libavcodec.so\nleak:libavutil.so\n";
}

namespace {
qint64 firstFrame(const QByteArray& file)
{
    Mpeg_Info info;
    MemorySource src(file);
    return Find_First_Frame(src, info);
}

QStringList labelsOf(TagState& state, const QByteArray& file)
{
    MemorySource src(file);
    const MpegLabels l = Show_Mpeg_Info(state, src);
    return {l.labSize, l.labLength, l.LabFramesCount, l.labBitRate, l.LabFrameSize,
            l.labLayer, l.labFreqChan, l.labChannels, l.LabTagSize};
}

// A first frame with a Xing header of `frames` frames and `flags`, then three plain frames.
QByteArray xingFile(quint32 flags, quint32 frames = 2296)
{
    return mpegFrame(0xFB, 0x90, 0, 417, QByteArray(32, '\0') + "Xing" + be32(flags) + be32(frames))
        + mp3Frame().repeated(3);
}

// A decoder that answers `value` and counts the questions.
struct FixedProbe : DurationProbe {
    std::optional<double> value;
    int asked = 0;
    std::optional<double> durationSeconds(const QString&) override { return ++asked, value; }
};
}  // namespace

TEST(MpegSearch, FindsTheFirstHeaderBehindTagAndJunkAndDescribesIt)
{
    const QByteArray tagBytes = tag(textFrame("TIT2", "x"));
    const QByteArray junk = QByteArray("\xFF\x00\xFF\xFB\x00\xFF\xFB\xF0junk", 10).repeated(100);
    EXPECT_EQ(firstFrame(tagBytes + junk + mp3Frame()), tagBytes.size() + junk.size() + 1);
    // Bitrate index 0 and 15, reserved frequency, version and layers, no sync.
    for (const char* refused : {"\xFF\xFB\x00", "\xFF\xFB\xF0", "\xFF\xFB\x9C", "\xFF\xEB\x90", "\xFF\xF9\x90",
                                "\xFF\xE1\x90", "\xFE\xFB\x90"})
        EXPECT_EQ(firstFrame(QByteArray(refused, 3) + QByteArray(101, '\0') + mp3Frame()), 105) << refused;
    // A header may straddle a 4096-byte block; no block starts beyond the length less 24.
    EXPECT_EQ(firstFrame(QByteArray(4094, '\0') + mp3Frame()), 4095);
    EXPECT_EQ(firstFrame(QByteArray(4100, '\0') + mp3Frame().left(30)), 4101);
    EXPECT_EQ(firstFrame(QByteArray(4100, '\0') + mp3Frame().left(19)), 0);
    // A tag of another version is searched through; a tag alone has no frame.
    EXPECT_EQ(firstFrame(tag(QByteArray("\xFF\xFB\x90\x00", 4), 4) + mp3Frame()), 11);
    EXPECT_EQ(firstFrame(tagBytes), 0);

    const std::pair<QByteArray, const char*> rows[] = {
        // Mpeg Layer Bitrate Frequency Channels CRC Copyright Original Emphasis
        {"\xFF\xFB\x90\x44", "MPEG 1.0|Layer 3|128 Kbit|44100 Hz| Joint Stereo|No| No| Yes| None"},
        {"\xFF\xF7\xD0\x82", "MPEG 2.0|Layer 1|224 Kbit|22050 Hz| Dual Channel|No| No| No| invalid"},
        {"\xFF\xFA\xE4\xC9", "MPEG 1.0|Layer 3|320 Kbit|48000 Hz| Mono|Yes| Yes| No| 50/15 microsec"},
        {"\xFF\xFF\xE0\x03", "MPEG 1.0|Layer 1|448 Kbit|44100 Hz| Stereo|No| No| No| CCIT J.17"},
        {"\xFF\xE5\x74\x40", "MPEG 2.5|Layer 2|56 Kbit|12000 Hz| Joint Stereo|No| No| No| None"},
    };
    for (const auto& [header, texts] : rows) {
        Mpeg_Info i;
        MemorySource src(QByteArray(7, 'j') + header + QByteArray(600, '\0'));
        EXPECT_EQ(QStringList({QString::number(Read_Mpeg_Info(src, i, 1)), i.Mpeg, i.Layer, i.Bitrate, i.Frequency,
                               i.Channels, i.CRC, i.Copyright, i.Original, i.Emphasis, i.Size}).join('|'),
                  "8|" + QString(texts) + "|611 bytes");
    }
    // Xing and Info headers stand by version and channel mode; one byte off they are not seen.
    const std::tuple<quint8, quint8, int, const char*> xing[] = {
        {0xFB, 0x00, 36, "Xing"}, {0xFB, 0xC0, 21, "Info"}, {0xF3, 0x40, 21, "Xing"}, {0xE3, 0xC0, 13, "Info"}};
    for (const auto& [b2, b4, offset, mark] : xing) {
        for (int shift : {0, 1}) {
            const QByteArray body = QByteArray(offset + shift - 4, '\0') + mark + be32(0x0F) + be32(0x01020304);
            Mpeg_Info i;
            MemorySource src(mpegFrame(b2, 0x50, b4, 417, body));
            ASSERT_EQ(Read_Mpeg_Info(src, i, 1), 1);
            EXPECT_EQ(i.VBR, i.Bitrate.endsWith(" Kbit (VBR)"));
            EXPECT_EQ(QString("%1 %2 %3").arg(int(i.VBR)).arg(i.Xing_Flags).arg(i.Xing_Frames),
                      shift ? "0 0 0" : "1 15 16909060") << offset;
        }
    }
}

TEST(MpegFrame, StrictHeaderTheProgramsFrameSizeAndTheWalk)
{
    const std::pair<QByteArray, std::array<int, 6>> rows[] = {
        // version, layer, samples per frame, frame size, bitrate, sample rate
        {"\xFF\xFB\x90\x64", {1, 3, 1152, 417, 128000, 44100}},
        {"\xFF\xFB\x92\x64", {1, 3, 1152, 418, 128000, 44100}},  // padding
        {"\xFF\xF3\x84\xC0", {2, 3, 576, 192, 64000, 24000}},
        {"\xFF\xE3\x18\x00", {3, 3, 576, 72, 8000, 8000}},
        {"\xFF\xFD\x18\x82", {1, 2, 1152, 144, 32000, 32000}},
        {"\xFF\xFF\xE0\x03", {1, 1, 384, 1950, 448000, 44100}},  // Layer 1 divides by 2
    };
    for (const auto& [bytes, expected] : rows) {
        MemorySource src("ab" + bytes);
        const Mpeg_Frame f = Read_Mpeg_Frame(src, 3);
        EXPECT_TRUE(f.Valid && !Read_Mpeg_Frame(src, 2).Valid);
        EXPECT_EQ((std::array<int, 6>{f.Version, f.Layer, f.Samples_Per_Frame, f.Frame_Size, f.Bitrate, f.Sample_Rate}),
                  expected);
        EXPECT_FLOAT_EQ(Seconds_Per_Frame(src), float(expected[2]) / float(expected[5]));
        // The internal player takes MPEG 1 Layer 3 only.
        EXPECT_EQ(Is_Mpeg1_Layer3(src), expected[0] == 1 && expected[1] == 3) << expected[0] << " " << expected[1];
    }
    MemorySource none(QByteArray(2000, '\xFF'));
    EXPECT_EQ(Seconds_Per_Frame(none), 0.0f);
    EXPECT_FALSE(Is_Mpeg1_Layer3(none));
    // The walk stops at the first thing that is not a frame; Layer 1 steps by the long frames.
    const std::pair<QByteArray, int> walks[] = {
        {tag(textFrame("TIT2", "x")) + (mp3Frame() + mpegFrame(0xFB, 0x92, 0, 418)).repeated(5) + kTag1, 10},
        {mp3Frame().repeated(3) + "junk" + mp3Frame().repeated(3), 3},
        {mpegFrame(0xFF, 0xE0, 0, 487).repeated(8), 1},
        {mpegFrame(0xFF, 0xE0, 0, 1950).repeated(3), 3},
        {QByteArray(1000, '\0'), 0},
    };
    for (const auto& [file, count] : walks) {
        MemorySource src(file);
        EXPECT_EQ(Count_Mpeg_Frames(src), count);
    }
}

TEST(MpegLabels, WhereTheLengthComesFrom)
{
    const QByteArray cbr = tag(textFrame("TIT2", "x")) + QByteArray(1024, 'j') + mp3Frame().repeated(10);
    const auto xing = [](quint32 flags) { return xingFile(flags); };
    const std::tuple<QByteArray, const char*, const char*, const char*> rows[] = {
        // Panel time, frame count; four labels, Frames and Length after. Without a time the walk counts.
        {cbr, "", "", "Time: 00:00|Frames Count: 10|Bitrate: 128 Kbit|Frame Size: 417 bytes|10|261"},
        // With one, the tag's frame count, or an estimate marked ">".
        {cbr, "03:25", "", "Time: 03:25|Frames Count: >7847|Bitrate: 128 Kbit|Frame Size: 417 bytes||"},
        {cbr, "03:25", "1234", "Time: 03:25|Frames Count: 1234|Bitrate: 128 Kbit|Frame Size: 417 bytes|1234|"},
        // The Xing count (n = frames + 1) is believed without a time, if its flag is set.
        {xing(0x0F), "", "", "Time: 01:00|Frames Count: 2297|Bitrate: Variable|Frame Size: Variable||60003"},
        {xing(0x0E), "", "", "Time: 00:00|Frames Count: 4|Bitrate: Variable|Frame Size: Variable|4|104"},
        {xing(0x0F), "00:13", "500", "Time: 00:13|Frames Count: 500|Bitrate: Variable|Frame Size: Variable|500|"},
    };
    for (const auto& [file, time, frames, expected] : rows) {
        TagState s;
        s.Tag2_Panel.Tag2_Text_Time = time;
        s.Tag2_Fields.Frames = frames;
        const QStringList labels = labelsOf(s, file).mid(1, 4);
        EXPECT_EQ((labels + QStringList{s.Tag2_Fields.Frames, s.Tag2_Fields.Length}).join('|'), expected);
    }
    // All nine: the junk is no part of the tag. A tag and no audio: all blank.
    TagState s;
    EXPECT_EQ(labelsOf(s, cbr), QStringList({"Size: 5216 bytes", "Time: 00:00", "Frames Count: 10", "Bitrate: 128 Kbit",
                                             "Frame Size: 417 bytes", "Mpeg: MPEG 1.0 Layer 3", "Freq: 44100 Hz",
                                             "Channels:  Stereo", "Tag2 Size: 22 bytes"}));
    EXPECT_EQ(labelsOf(s, tag(textFrame("TIT2", "x"))), QStringList(9, QString()));
}

TEST(TrackSeconds, FromTheFramesOrFromGStreamerMeasuringTheStrippedCopy)
{
    TempEnv env;
    const QString data = env.path("Motörhead/");  // a path beyond ASCII reaches the decoder intact
    const QString path = env.path("t.mp3"), target = env.path("target.mp3");
    QDir().mkpath(data);
    // The audio from the first frame to the end; no target without one, or onto the source.
    const QByteArray audio = makeMp3() + kTag1, noFrame = tag(textFrame("TIT2", "x")) + QByteArray(6000, 'j');
    const std::pair<QByteArray, QByteArray> strips[] = {
        {tag(textFrame("TIT2", "x") + QByteArray(300, '\0')) + QByteArray(99, 'j') + audio, audio},
        {noFrame, "untouched"},
    };
    for (const auto& [in, out] : strips) {
        writeFile(path, in);
        writeFile(target, "untouched");
        EXPECT_EQ(Strip_Tag2(path, target), out != "untouched");
        EXPECT_EQ(readFile(target), out);
    }
    EXPECT_FALSE(Strip_Tag2(path, path));
    EXPECT_EQ(readFile(path), noFrame);

    // Sound first frames never need the decoder: the Xing header or the walk.
    const QByteArray vbr = makeMp3({5, 44100, 2, 160, true}), bare = makeMp3({2, 44100, 2, 128, false, 4, false});
    const auto breakSecondFrame = [](QByteArray mp3) {  // a walk stops after one frame
        MemorySource src(mp3);
        mp3[Read_Mpeg_Frame(src, 1).Frame_Size] = 0;
        return mp3;
    };
    const QByteArray huge = QByteArray(vbr).replace(36 + 8, 4, be32(0x7FFFFFF0));
    const std::pair<QByteArray, int> rows[] = {
        {makeMp3({3}), 3}, {tag(textFrame("TIT2", "x")) + vbr + kTag1, 5}, {bare, 2}, {makeMp3({4, 22050, 1, 64}), 4},
        {breakSecondFrame(vbr), 5},   // the header is believed
        {xingFile(0x0F), 60},         // and counts its own frame: 2297 frames of 26.1 ms are 60.003 s
        {xingFile(0x0E), 0},          // without its frames flag the four frames are walked
        {breakSecondFrame(bare), 0},  // the walk stops at the break
        {huge, 0},                    // beyond 32767 seconds is unknown
        {QByteArray(9000, 'x'), 0},
    };
    FixedProbe unasked;
    TagState state;
    for (const auto& [file, seconds] : rows) {
        writeFile(path, file);
        EXPECT_EQ(Get_Track_Seconds(path, data, &unasked), seconds);
    }
    EXPECT_EQ(unasked.asked, 0);
    // The filename tagger's variant: the walk fills Frames, a length already there stays; the
    // Xing count, with its own frame, gives the length.
    FtTag2Fields& ft = state.FT_Tag2_Fields;
    const std::tuple<QByteArray, QString, const char*> variants[] = {
        {mp3Frame().repeated(77), "61000", "77|61000|01:01"},
        {mp3Frame().repeated(77), "", "77|2011|00:02"},
        {xingFile(0x0F), "", "|60003|01:00"},
    };
    for (const auto& [file, length, expected] : variants) {
        writeFile(path, file);
        ft.Frames.clear();
        ft.Length = length;
        Get_Filename_Tag_Time(state, path);
        EXPECT_EQ(QStringList({ft.Frames, ft.Length, ft.Time}).join('|'), expected);
    }

    GstDurationProbe probe;
    writeFile(path, tag(textFrame("TIT2", "x") + QByteArray(100, '\0')) + QByteArray(50, 'j') + makeMp3({3}));
    EXPECT_EQ(Decoder_Track_Seconds(path, data, &probe), 3);
    // Not audio, or not there: no answer, no guess.
    writeFile(target, QByteArray(5000, 'x'));
    EXPECT_FALSE(probe.durationSeconds(target) || probe.durationSeconds(env.path("missing.mp3")));
    EXPECT_EQ(Decoder_Track_Seconds(target, data, &probe), 0);
    EXPECT_TRUE(QDir(data).isEmpty());  // no CheckTime.mp3 left behind
    // The old runtime rounded half to even.
    FixedProbe fixed;
    fixed.value = 2.5;
    EXPECT_EQ(Decoder_Track_Seconds(path, data, &fixed), 2);
    fixed.value = 3.5;
    EXPECT_EQ(Decoder_Track_Seconds(path, data, &fixed), 4);
}
