// The audio alone (Strip_Tag2) and the length of a track from its frames.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include "tags/mpeg_info.h"
#include "tags/strip.h"
#include "tags/track_seconds.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"
#include "writer_fixtures.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
const QByteArray kTag1 = QByteArray("TAG").leftJustified(128, '\0');

// Spoils the sync of the frame behind the first, so a walk stops after one.
QByteArray breakSecondFrame(QByteArray mp3)
{
    MemorySource src(mp3);
    mp3[Read_Mpeg_Frame(src, 1).Frame_Size] = 0;
    return mp3;
}
}  // namespace

TEST(StripTag2, KeepsTheAudioFromTheFirstFrameToTheEnd)
{
    TempEnv env;
    const QString source = env.path("source.mp3"), target = env.path("target.mp3");
    const QByteArray audio = makeMp3() + kTag1;
    const QByteArray noFrame = tag(textFrame("TIT2", "x")) + QByteArray(6000, 'j');
    const std::pair<QByteArray, QByteArray> rows[] = {
        {tag(textFrame("TIT2", "x") + QByteArray(300, '\0')) + QByteArray(99, 'j') + audio, audio},
        {audio, audio},
        {tag(textFrame("TIT2", "x"), 4) + audio, audio},  // a v2.4 tag is searched through
        {noFrame, "untouched"},
    };
    for (const auto& [in, out] : rows) {
        writeFile(source, in);
        writeFile(target, "untouched");
        EXPECT_EQ(Strip_Tag2(source, target), out != "untouched");
        EXPECT_EQ(readFile(target), out);
    }
    // A strip onto its own source would destroy it.
    EXPECT_FALSE(Strip_Tag2(source, source));
    EXPECT_EQ(readFile(source), noFrame);
}

TEST(TrackSeconds, FromTheXingHeaderOrTheWalk)
{
    TempEnv env;
    const QString data = env.path("data/"), path = env.path("t.mp3");
    QDir().mkpath(data);
    const Mp3Spec cbr{3}, vbr{5, 44100, 2, 160, true}, bare{2, 44100, 2, 128, false, 4, false},
        mono{4, 22050, 1, 64};
    QByteArray huge = makeMp3(vbr);
    huge.replace(36 + 8, 4, be32(0x7FFFFFF0));
    const std::pair<QByteArray, int> rows[] = {
        {makeMp3(cbr), 3},
        {tag(textFrame("TIT2", "x")) + makeMp3(vbr) + kTag1, 5},
        {makeMp3(bare), 2},
        {makeMp3(mono), 4},
        {breakSecondFrame(makeMp3(vbr)), 5},   // the header is believed
        {breakSecondFrame(makeMp3(bare)), 0},  // the walk stops at the break
        {huge, 0},                             // beyond 32767 seconds is unknown
        {QByteArray(9000, 'x'), 0},
    };
    // Sound first frames never need the decoder.
    struct Refusing : DurationProbe {
        std::optional<double> durationSeconds(const QString&) override
        {
            ADD_FAILURE() << "the decoder was asked";
            return 1;
        }
    } probe;
    for (const auto& [file, seconds] : rows) {
        writeFile(path, file);
        EXPECT_EQ(Get_Track_Seconds(path, data, &probe), seconds);
        EXPECT_FALSE(QFileInfo::exists(data + "CheckTime.mp3"));
    }

    // The filename tagger's variant: without a header the walk fills
    // Frames and the length follows from them; a length already there stays.
    writeFile(path, makeMp3(bare));
    TagState walked, kept;
    Get_Filename_Tag_Time(walked, path);
    const FtTag2Fields& w = walked.FT_Tag2_Fields;
    EXPECT_EQ(w.Frames.toLongLong(), Count_Mpeg_Frames(path));
    EXPECT_EQ(w.Length, QString::number(qint64(double(1152.0f / 44100.0f) * w.Frames.toLongLong() * 1000)));
    EXPECT_EQ(w.Time, "00:02");
    kept.FT_Tag2_Fields.Length = "61000";
    Get_Filename_Tag_Time(kept, path);
    EXPECT_EQ(kept.FT_Tag2_Fields.Length + " " + kept.FT_Tag2_Fields.Time, "61000 01:01");
}
