// The FrameMPEG panel's nine labels. The length of a track comes from the
// Xing header, from the tag's frame count or, last, from walking all frames,
// which is what keeps listing a VBR file with a good tag fast.
#include <cmath>

#include "mpeg_info.h"
#include "other_versions.h"
#include "shell/helpers.h"
#include "tag2_header.h"
#include "tag_state.h"

namespace sonorit {

namespace {
// The tag's frame count, counted by walking when the tag has none; the count
// stays in the field so that the next tag write stores it.
qint64 framesFromTag(TagState& state, ByteSource& src)
{
    QString& frames = state.Tag2_Fields.Frames;
    if (frames.isEmpty())
        frames = QString::number(Count_Mpeg_Frames(src));
    return Val(frames);
}

void showCounted(TagState& state, MpegLabels& labels, double spf, qint64 n, bool fillLength)
{
    const auto seconds = static_cast<long long>(std::floor(spf * double(n)));
    labels.labLength = QStringLiteral("Time: ") + Format_Seconds(seconds);
    labels.LabFramesCount = QStringLiteral("Frames Count: ") + QString::number(n);
    QString& length = state.Tag2_Fields.Length;
    if (fillLength && length.isEmpty())
        length = QString::number(static_cast<long long>(std::floor(spf * double(n) * 1000)));
}
}  // namespace

MpegLabels Show_Mpeg_Info(TagState& state, ByteSource& file)
{
    TagView view(file, state.Read_Other_Versions);
    ByteSource& src = view.source();
    MpegLabels labels;
    const qint64 start = Audio_Search_Start(src);
    Mpeg_Info info;
    const qint64 position = Read_Mpeg_Info(src, info, start);
    if (position == 0)
        return labels;
    const Mpeg_Frame frame = Read_Mpeg_Frame(src, position);
    if (!frame.Valid || frame.Sample_Rate == 0)
        return labels;
    // Single precision, as the program always computed it.
    const double spf = static_cast<float>(frame.Samples_Per_Frame) / static_cast<float>(frame.Sample_Rate);
    const QString timeText = state.Tag2_Panel.Tag2_Text_Time;

    labels.labSize = QStringLiteral("Size: ") + info.Size;
    if (info.VBR) {
        const bool fromXing = timeText.isEmpty() && (info.Xing_Flags & 1);
        const qint64 n = fromXing ? qint64(info.Xing_Frames) + 1 : framesFromTag(state, src);
        showCounted(state, labels, spf, n, timeText.isEmpty());
        labels.labBitRate = QStringLiteral("Bitrate: Variable");
        labels.LabFrameSize = QStringLiteral("Frame Size: Variable");
    } else {
        if (!timeText.isEmpty()) {
            const long long seconds = Val(timeText.left(2)) * 60 + Val(timeText.right(2));
            const QString& frames = state.Tag2_Fields.Frames;
            // ">" marks an estimate from the time.
            labels.LabFramesCount = !frames.isEmpty()
                ? QStringLiteral("Frames Count: ") + frames
                : QStringLiteral("Frames Count: >") + QString::number(static_cast<long long>(std::floor(seconds / spf)));
            labels.labLength = QStringLiteral("Time: ") + timeText;
        } else {
            showCounted(state, labels, spf, framesFromTag(state, src), true);
        }
        labels.labBitRate = QStringLiteral("Bitrate: ") + info.Bitrate;
        labels.LabFrameSize = QStringLiteral("Frame Size: ") + QString::number(frame.Frame_Size) + QStringLiteral(" bytes");
    }
    labels.labLayer = QStringLiteral("Mpeg: ") + info.Mpeg + QLatin1Char(' ') + info.Layer;
    labels.labFreqChan = QStringLiteral("Freq: ") + info.Frequency;
    labels.labChannels = QStringLiteral("Channels: ") + info.Channels;
    labels.LabTagSize = QStringLiteral("Tag2 Size: ") + QString::number(start - 1) + QStringLiteral(" bytes");
    return labels;
}

MpegLabels Show_Mpeg_Info(TagState& state, const QString& path)
{
    FileSource src(path);
    return src.isOpen() ? Show_Mpeg_Info(state, src) : MpegLabels{};
}

}  // namespace sonorit
