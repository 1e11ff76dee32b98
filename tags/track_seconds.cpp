#include "track_seconds.h"

#include <QDir>
#include <QFile>
#include <cmath>

#include "id3v2_reader.h"
#include "mpeg_info.h"
#include "shell/helpers.h"
#include "strip.h"

namespace sonorit {

namespace {

// What the first frame says about time; valid only when the search and the
// strict header read both accept it.
struct FirstFrame {
    bool valid = false;
    float secondsPerFrame = 0;  // single precision, as the program always computed it
    bool xingCount = false;     // a Xing/Info header with its frames field
    qint64 xingFrames = 0;
};

FirstFrame Read_First_Frame(ByteSource& src)
{
    FirstFrame first;
    Mpeg_Info info;
    const qint64 position = Find_First_Frame(src, info);
    if (position == 0)
        return first;
    const Mpeg_Frame frame = Read_Mpeg_Frame(src, position);
    if (!info.Valid || !frame.Valid || frame.Sample_Rate <= 0 || frame.Samples_Per_Frame <= 0)
        return first;
    first.valid = true;
    first.secondsPerFrame = float(frame.Samples_Per_Frame) / float(frame.Sample_Rate);
    first.xingCount = info.VBR && (info.Xing_Flags & 1);
    // The header does not count the frame it stands in.
    first.xingFrames = qint64(info.Xing_Frames) + 1;
    return first;
}

int Fit_16_Bits(double seconds)
{
    return seconds >= 0 && seconds <= 32767 ? int(seconds) : 0;
}

}  // namespace

int Decoder_Track_Seconds(const QString& path, const QString& dataFolder, DurationProbe* probe)
{
    try {
        const QString checkTime = dataFolder + QStringLiteral("CheckTime.mp3");
        if (!probe || !QDir().mkpath(dataFolder) || !Strip_Tag2(path, checkTime))
            return 0;
        const auto duration = probe->durationSeconds(checkTime);
        QFile::remove(checkTime);
        // Rounded half to even, as the old runtime's conversion did.
        return duration ? Fit_16_Bits(std::nearbyint(*duration)) : 0;
    } catch (...) {
        return 0;
    }
}

int Get_Track_Seconds(const QString& path, const QString& dataFolder, DurationProbe* probe)
{
    try {
        FileSource src(path);
        if (!src.isOpen())
            return Decoder_Track_Seconds(path, dataFolder, probe);
        return Get_Track_Seconds(src, path, dataFolder, probe);
    } catch (...) {
        return 0;
    }
}

int Get_Track_Seconds(ByteSource& src, const QString& path, const QString& dataFolder, DurationProbe* probe)
{
    try {
        const FirstFrame first = Read_First_Frame(src);
        if (!first.valid)
            return Decoder_Track_Seconds(path, dataFolder, probe);
        const qint64 frames = first.xingCount ? first.xingFrames : Count_Mpeg_Frames(src);
        return Fit_16_Bits(std::floor(double(first.secondsPerFrame) * double(frames)));
    } catch (...) {
        return 0;
    }
}

void Get_Filename_Tag_Time(TagState& state, const QString& path)
{
    try {
        FileSource src(path);
        const FirstFrame first = src.isOpen() ? Read_First_Frame(src) : FirstFrame{};
        if (!first.valid)
            return;
        FtTag2Fields& f = state.FT_Tag2_Fields;
        qint64 frames = first.xingFrames;
        if (!first.xingCount) {
            if (f.Frames.isEmpty())
                f.Frames = QString::number(Count_Mpeg_Frames(src));
            frames = Val(f.Frames);
        }
        if (f.Length.isEmpty())
            f.Length = QString::number(std::floor(double(first.secondsPerFrame) * double(frames) * 1000), 'f', 0);
        f.Time = Tlen_To_Time(f.Length);
    } catch (...) {
    }
}

}  // namespace sonorit
