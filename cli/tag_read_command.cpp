// sonorit-cli tags FILE...: everything the tag engine reads from a file, one
// JSON object per line, in argument order.
#include <cstdio>

#include "cli/cli_context.h"
#include "cli/json_writer.h"
#include "platform/gstreamer/gst_duration_probe.h"
#include "shell/settings_families.h"
#include "tags/byte_source.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tags/mpeg_info.h"
#include "tags/other_versions.h"
#include "tags/sylt.h"
#include "tags/track_seconds.h"

namespace sonorit::cli {

namespace {

JsonObject tag1Json(const Tag1Record& r)
{
    return JsonObject()
        .add("title", r.Title.text())
        .add("artist", r.Artist.text())
        .add("album", r.Album.text())
        .add("year", r.Year.text())
        .add("comment", r.Comment.text())
        .add("zero_byte", int(r.ZeroByte))
        .add("track", int(r.Track))
        .add("genre", int(r.Genre));
}

// The fields both reads report, in the order scripts see them.
JsonObject& addFields(JsonObject& o, const Tag2FieldSet& f)
{
    return o.add("artist", f.Artist)
        .add("album", f.Album)
        .add("track", f.Track)
        .add("year", f.Year)
        .add("title", f.Title)
        .add("va", f.VA)
        .add("time", f.Time);
}

JsonObject tag2Json(const TagState& s)
{
    const Tag2FieldSet& f = s.Tag2_Fields;
    JsonObject o;
    o.add("present", s.Tag2_Present)
        .add("total_size", qint64(s.Tag2_Total_Size))
        .add("padding_size", qint64(s.Tag2_Padding_Size))
        .add("padding_position", qint64(s.Tag2_Padding_Position));
    return addFields(o, f)
        .add("length", f.Length)
        .add("genre", f.Genre)
        .add("frames", f.Frames)
        .add("comment", f.Comment)
        .add("comment_language", s.Comment_Language)
        .add("comment_description", s.Comment_Description)
        .add("cover", !f.Cover_File.isEmpty());
}

JsonObject mode1Json(const Tag2FieldSet& f)
{
    JsonObject o;
    return addFields(o, f).add("genre", f.Genre);
}

JsonObject mpegJson(const Mpeg_Info& m, qint64 position)
{
    return JsonObject()
        .add("valid", m.Valid)
        .add("position", position)
        .add("bitrate", m.Bitrate)
        .add("channels", m.Channels)
        .add("copyright", m.Copyright)
        .add("crc", m.CRC)
        .add("emphasis", m.Emphasis)
        .add("frequency", m.Frequency)
        .add("layer", m.Layer)
        .add("mpeg", m.Mpeg)
        .add("original", m.Original)
        .add("size", m.Size)
        .add("file_length", qint64(m.File_Length))
        .add("vbr", m.VBR)
        .add("xing_flags", int(m.Xing_Flags))
        .add("xing_frames", qint64(m.Xing_Frames));
}

JsonObject labelsJson(const MpegLabels& l)
{
    return JsonObject()
        .add("labSize", l.labSize)
        .add("labLength", l.labLength)
        .add("LabFramesCount", l.LabFramesCount)
        .add("labBitRate", l.labBitRate)
        .add("LabFrameSize", l.LabFrameSize)
        .add("labLayer", l.labLayer)
        .add("labFreqChan", l.labFreqChan)
        .add("labChannels", l.labChannels)
        .add("LabTagSize", l.LabTagSize);
}

QString lyricsJson(const LyricState& l)
{
    QString list = QStringLiteral("[");
    for (int i = 1; i <= l.Lyric_Count; ++i) {
        if (i > 1)
            list += QLatin1Char(',');
        list += JsonObject().add("time", qint64(l.Lyric_Time[size_t(i)])).add("text", l.Lyric_Text[size_t(i)]).text();
    }
    return list + QLatin1Char(']');
}

QString describe(CliContext& c, DurationProbe& probe, const QString& path, bool* ok)
{
    JsonObject obj;
    obj.add("path", path);
    FileSource file(path);
    *ok = file.isOpen();
    if (!*ok)
        return obj.add("error", file.errorString()).text();
    // One view of the file for every question, so that the frames are
    // walked once; a tag of another version is translated once too.
    TagView view(file, c.app.Tag_Read_Other);
    ByteSource& src = view.source();
    const QString& data = c.app.paths.Data_Folder;

    TagState state(data);
    state.Covers_To_File = false;  // only whether there is one is reported
    Parse_Tag1(src, state.Tag1_Record);
    obj.add("tag1", tag1Json(state.Tag1_Record));

    Read_Tag2(state, src, path, Tag2Mode::Panel);
    obj.add("tag2", tag2Json(state));
    // The labels see what the panel would show after this read.
    const MpegLabels labels = Show_Mpeg_Info(state, src);

    TagState mode1(data);
    mode1.Covers_To_File = false;
    Read_Tag2(mode1, src, path, Tag2Mode::Import);
    obj.add("tag2_mode1", mode1Json(mode1.Tag2_Fields));

    Mpeg_Info info;
    const qint64 position = Find_First_Frame(src, info);
    obj.add("mpeg", mpegJson(info, position));
    obj.add("frames", Count_Mpeg_Frames(src));
    obj.add("seconds", qint64(Get_Track_Seconds(src, path, data, &probe)));
    obj.add("labels", labelsJson(labels));

    TagState lyrics;
    Read_Synced_Lyrics(lyrics, src);
    obj.raw("lyrics", lyricsJson(lyrics.Lyrics));
    return obj.text();
}

const CliCommand tagsCommand("tags", "tags FILE...", [](CliContext& c, const QStringList& args) {
    if (args.isEmpty())
        return int(ExitUsage);
    if (auto e = Get_Tag_Settings(c.app)) {
        reportError(e->text);
        return int(ExitFailed);
    }
    // Lines go out in large writes; a decoder starts only for a file that
    // needs one.
    static char buffer[1 << 16];
    setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
    GstDurationProbe probe;
    bool allRead = true;
    for (const QString& path : args) {
        bool ok = true;
        out(describe(c, probe, path, &ok) + QLatin1Char('\n'));
        allRead = allRead && ok;
    }
    fflush(stdout);
    return int(allRead ? ExitOk : ExitFailed);
});

}  // namespace
}  // namespace sonorit::cli
