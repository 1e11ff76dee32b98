// The FrameMPEG labels and where they take the length of a track from; then
// the same on real files from LAME.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tags/id3v2_reader.h"
#include "tags/mpeg_info.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
QStringList labelsOf(TagState& state, const QByteArray& file)
{
    MemorySource src(file);
    const MpegLabels l = Show_Mpeg_Info(state, src);
    return {l.labSize, l.labLength, l.LabFramesCount, l.labBitRate, l.LabFrameSize,
            l.labLayer, l.labFreqChan, l.labChannels, l.LabTagSize};
}

// A first frame with a Xing header of MPEG 1 stereo.
QByteArray xingFirst(quint32 flags, quint32 frames)
{
    return mpegFrame(0xFB, 0x90, 0x00, 417, QByteArray(32, '\0') + "Xing" + be32(flags) + be32(frames));
}
}  // namespace

TEST(MpegLabels, ConstantRate)
{
    const QByteArray tagBytes = tag(textFrame("TIT2", "x"));
    const QByteArray file = tagBytes + QByteArray(1024, 'j') + repeat(mp3Frame(), 10);

    // No time in the panel: the frames are walked, and count and length stay
    // in the fields for the next tag write. The junk is no part of the tag.
    TagState state;
    EXPECT_EQ(labelsOf(state, file),
              QStringList({"Size: 5216 bytes", "Time: 00:00", "Frames Count: 10", "Bitrate: 128 Kbit",
                           "Frame Size: 417 bytes", "Mpeg: MPEG 1.0 Layer 3", "Freq: 44100 Hz", "Channels:  Stereo",
                           "Tag2 Size: 22 bytes"}));
    EXPECT_EQ(QStringList({state.Tag2_Fields.Frames, state.Tag2_Fields.Length}), QStringList({"10", "261"}));

    // A time in the panel: the tag's frame count, or an estimate marked ">".
    TagState timed;
    timed.Tag2_Panel.Tag2_Text_Time = "03:25";
    EXPECT_EQ(labelsOf(timed, file).mid(1, 2), QStringList({"Time: 03:25", "Frames Count: >7847"}));
    EXPECT_TRUE(timed.Tag2_Fields.Length.isEmpty());
    timed.Tag2_Fields.Frames = "1234";
    EXPECT_EQ(labelsOf(timed, file)[2], "Frames Count: 1234");

    // A tag and no audio: all nine labels stay blank.
    EXPECT_EQ(labelsOf(state, tagBytes), QStringList(9, QString()));
}

TEST(MpegLabels, VariableRate)
{
    // The Xing count is believed when the panel has no time: n = frames + 1.
    const QByteArray file = xingFirst(0x0F, 2296) + repeat(mp3Frame(), 3);
    TagState state;
    EXPECT_EQ(labelsOf(state, file).mid(1, 4), QStringList({"Time: 01:00", "Frames Count: 2297", "Bitrate: Variable",
                                                            "Frame Size: Variable"}));
    EXPECT_EQ(QStringList({state.Tag2_Fields.Frames, state.Tag2_Fields.Length}), QStringList({"", "60003"}));

    // Without the frames flag the walk counts: the header frame and three.
    TagState noFlag;
    EXPECT_EQ(labelsOf(noFlag, xingFirst(0x0E, 2296) + repeat(mp3Frame(), 3))[2], "Frames Count: 4");

    // With a time in the panel the tag's count wins and the length is left.
    TagState timed;
    timed.Tag2_Panel.Tag2_Text_Time = "00:13";
    timed.Tag2_Fields.Frames = "500";
    EXPECT_EQ(labelsOf(timed, file).mid(1, 2), QStringList({"Time: 00:13", "Frames Count: 500"}));
    EXPECT_TRUE(timed.Tag2_Fields.Length.isEmpty());
}

TEST(RealFiles, LameOutputReadsBack)
{
    QTemporaryDir dir;
    Mp3Spec cbr;
    cbr.seconds = 3;
    Mp3Spec vbr = cbr;
    vbr.vbr = true;
    Mp3Spec mono22 = cbr;
    mono22.sampleRate = 22050;
    mono22.channels = 1;
    mono22.bitrateKbps = 48;
    mono22.writeXing = false;
    for (const Mp3Spec& spec : {cbr, vbr, mono22}) {
        const QByteArray tagBytes = tag(textFrame("TIT2", "Sine") + QByteArray(500, '\0'));
        const QString path = dir.filePath("sine.mp3");
        writeFile(path, tagBytes + makeMp3(spec) + QByteArray("TAG").leftJustified(128, '\0'));

        Mpeg_Info info;
        EXPECT_EQ(Read_Mpeg_Info(path, info, tagBytes.size() + 1), tagBytes.size() + 1);
        EXPECT_EQ(info.VBR, spec.writeXing);
        const qint64 walked = Count_Mpeg_Frames(path);
        if (spec.writeXing)
            EXPECT_EQ(walked, qint64(info.Xing_Frames) + 1);
        EXPECT_NEAR(Seconds_Per_Frame(path) * walked, spec.seconds, 0.2);

        TagState state(dir.path() + "/");
        Read_Tag2(state, path, Tag2Mode::Panel);
        EXPECT_EQ(state.Tag2_Padding_Size, 500);
        const MpegLabels l = Show_Mpeg_Info(state, path);
        EXPECT_EQ(l.labLength, "Time: 00:03");
        EXPECT_EQ(l.LabFramesCount, QString("Frames Count: %1").arg(walked));
        EXPECT_EQ(l.labFreqChan, spec.sampleRate == 44100 ? "Freq: 44100 Hz" : "Freq: 22050 Hz");
        EXPECT_EQ(l.LabTagSize, QString("Tag2 Size: %1 bytes").arg(tagBytes.size()));
    }
}
