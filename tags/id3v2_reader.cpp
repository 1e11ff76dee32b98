#include "id3v2_reader.h"

#include <QFile>
#include <cmath>
#include <optional>

#include "frame_names.h"
#include "id3v1.h"
#include "id3v2_frames.h"
#include "other_versions.h"
#include "shell/helpers.h"
#include "tag2_header.h"

namespace sonorit {

namespace {
// What the walk found; a frame met twice leaves its last value.
struct Found {
    std::optional<QString> artist, album, track, year, title, va, tlen, tcon, tfrm, comment;
    bool cover = false;
};

void walk(TagState& state, ByteSource& src, const Tag2Header& tag, Tag2Mode mode, const QString& coverFile,
          Found& found)
{
    const qint64 end = tag.End();
    qint64 p = tag.firstFramePosition();
    while (p < end) {
        const auto frame = Read_Frame_Header(src, p);
        if (!frame)
            return;
        const QByteArray& id = frame->Frame_ID;
        if (Classify_Frame(id) == FrameClass::Stop) {
            // An unknown name is taken for the start of padding when its size
            // bytes are zero too.
            if (mode != Tag2Mode::Import && frame->Frame_Size == 0) {
                state.Tag2_Padding_Size = static_cast<qint32>(end - p);
                state.Tag2_Padding_Position = static_cast<qint32>(p);
            }
            return;
        }
        if (id == "TPE1")
            found.artist = Read_Text_Frame(src, p).trimmed();
        else if (id == "TALB")
            found.album = Read_Text_Frame(src, p).trimmed();
        else if (id == "TIT2")
            found.title = Read_Text_Frame(src, p).trimmed();
        else if (id == "TRCK")
            found.track = Read_Text_Frame(src, p);
        else if (id == "TYER")
            found.year = Read_Text_Frame(src, p);
        else if (id == "TPE2")
            found.va = Read_Text_Frame(src, p);
        else if (id == "TLEN")
            found.tlen = Read_Text_Frame(src, p);
        else if (id == "TCON")
            found.tcon = Read_Text_Frame(src, p);
        else if (id == "TFRM")
            found.tfrm = Read_Text_Frame(src, p);
        else if (id == "APIC")
            found.cover = ((!coverFile.isEmpty() || !state.Covers_To_File)
                           && Extract_Picture(src, p, coverFile, found.cover ? CoverWrite::Overlay : CoverWrite::Replace))
                || found.cover;
        else if (id == "COMM")
            found.comment = mode == Tag2Mode::Quick ? Read_Comment_Quick(state, src, p)
                                                    : Read_Comment_Frame(state, src, p);
        p += qint64(frame->Frame_Size) + 10;
    }
}

// Sets the field when the walk found a non-empty value.
void take(QString& field, const std::optional<QString>& value)
{
    if (value && !value->isEmpty())
        field = *value;
}

QString stampIfBlank(const QString& comment)
{
    return comment.trimmed().isEmpty() ? TagStamp() : comment;
}

void blankPanel(TagState& state)
{
    state.Tag2_Panel = Tag2Panel{};
    state.Tag2_Panel.Tag2_Text_Genre = Genre_Names()[148];
    state.Tag2_Panel.Tag2_Combo_Genre = 148;
}

void fillPanelMode(TagState& state, const Found& f, const QString& path)
{
    Tag2FieldSet& t = state.Tag2_Fields;
    Tag2Panel& panel = state.Tag2_Panel;
    take(t.Artist, f.artist);
    take(t.Album, f.album);
    take(t.Track, f.track);
    take(t.Year, f.year);
    take(t.Title, f.title);
    panel.Tag2_Text_Artist = t.Artist;
    panel.Tag2_Text_Album = t.Album;
    panel.Tag2_Text_Track = t.Track;
    panel.Tag2_Text_Year = t.Year;
    panel.Tag2_Text_Title = t.Title;
    take(t.VA, f.va);
    if (t.VA == QLatin1String("Various Artists"))
        panel.Tag2_Combo_VA = 1;
    if (f.tlen && !f.tlen->isEmpty()) {
        if (f.tlen->size() >= 4) {
            t.Length = *f.tlen;
            panel.Tag2_Text_Time = Tlen_To_Time(t.Length);
        } else {
            t.Length.clear();
        }
    }
    if (f.tcon && !f.tcon->isEmpty()) {
        t.Genre = *f.tcon;
        const GenreChoice g = Genre_From_Tcon(t.Genre);
        panel.Tag2_Text_Genre = g.name;
        panel.Tag2_Combo_Genre = g.entry;
        panel.Tag2_Text_Genre_Enabled = g.boxEnabled;
    }
    if (f.cover)
        t.Cover_File = t.Cover_Original = path;
    take(t.Frames, f.tfrm);
    // A frame count is only believed beside a length.
    if (t.Length.isEmpty() || t.Frames == QLatin1String("0"))
        t.Frames.clear();
    if (f.comment) {
        t.Comment = stampIfBlank(*f.comment);
        panel.Tag2_Text_Comment = t.Comment;
    }
}

void fillImportMode(TagState& state, const Found& f)
{
    Tag2FieldSet& t = state.Tag2_Fields;
    take(t.Artist, f.artist);
    take(t.Album, f.album);
    take(t.Track, f.track);
    take(t.Year, f.year);
    take(t.Title, f.title);
    if (f.va && !f.va->isEmpty())
        t.VA = *f.va == QLatin1String("Various Artists") ? QStringLiteral("Yes") : QStringLiteral("No");
    if (f.tlen && !f.tlen->isEmpty()) {
        const QString time = Tlen_To_Time(*f.tlen);
        t.Time = time == QLatin1String("00:00") ? QString() : time;
    }
    if (f.tcon && !f.tcon->isEmpty())
        t.Genre = Genre_From_Tcon(*f.tcon).name;
}

void fillQuickMode(TagState& state, const Found& f, const QString& path)
{
    Tag2FieldSet& t = state.Tag2_Quick_Fields;
    take(t.Artist, f.artist);
    take(t.Album, f.album);
    take(t.Track, f.track);
    take(t.Year, f.year);
    take(t.Title, f.title);
    // Only the flag survives: a retag writes back "Yes", which a later read
    // no longer takes for the flag.
    if (f.va && *f.va == QLatin1String("Various Artists"))
        t.VA = QStringLiteral("Yes");
    if (f.tlen && f.tlen->size() >= 4) {
        t.Length = *f.tlen;
        t.Time = Tlen_To_Time(t.Length);
    }
    if (t.Time.isEmpty() || t.Time == QLatin1String("00:00")) {
        t.Time.clear();
        t.Length.clear();
    }
    if (f.tcon && !f.tcon->isEmpty())
        t.Genre = Genre_From_Tcon(*f.tcon).name;
    if (f.cover)
        t.Cover_File = t.Cover_Original = path;
    take(t.Frames, f.tfrm);
    if (t.Length.isEmpty() || t.Frames == QLatin1String("0"))
        t.Frames.clear();
    if (f.comment)
        t.Comment = stampIfBlank(*f.comment);
}

void blankMode(TagState& state, Tag2Mode mode)
{
    switch (mode) {
    case Tag2Mode::Panel:
        blankPanel(state);
        state.Tag2_Fields = Tag2FieldSet{};
        state.Tag2_Present = false;
        state.Tag2_Total_Size = state.Tag2_Padding_Size = state.Tag2_Padding_Position = 0;
        state.Comment_Language.clear();
        state.Comment_Description.clear();
        state.Comment_Text_Read.clear();
        break;
    case Tag2Mode::Import: {
        Tag2FieldSet& t = state.Tag2_Fields;
        for (QString* field : {&t.Artist, &t.Album, &t.Track, &t.Year, &t.Title, &t.Genre, &t.VA, &t.Time})
            field->clear();
        break;
    }
    case Tag2Mode::Quick:
        state.Tag2_Quick_Fields = Tag2FieldSet{};
        break;
    }
}

void readFields(TagState& state, ByteSource& src, const QString& path, Tag2Mode mode, const QString& coverFile,
                Found& found)
{
    const auto tag = Find_Tag2(src);
    if (!tag)
        return;
    if (mode != Tag2Mode::Import) {
        state.Tag2_Present = true;
        state.Tag2_Total_Size = static_cast<qint32>(tag->Size + 10);
    } else {
        state.Tag2_Fields.VA = QStringLiteral("No");
        state.Tag2_Fields.Genre = Genre_Names()[148];
    }
    walk(state, src, *tag, mode, coverFile, found);
    switch (mode) {
    case Tag2Mode::Panel:
        fillPanelMode(state, found, path);
        break;
    case Tag2Mode::Import:
        fillImportMode(state, found);
        break;
    case Tag2Mode::Quick:
        fillQuickMode(state, found, path);
        break;
    }
}
}  // namespace

void Read_Tag2(TagState& state, ByteSource& src, const QString& path, Tag2Mode mode)
{
    blankMode(state, mode);
    // Without a data folder there is nowhere to put a cover, and the walk
    // leaves pictures alone. After a read the cover file of the mode holds
    // what the walk extracted, as if deleted first, or is gone.
    const QString coverFile = state.Data_Folder.isEmpty() || !state.Covers_To_File
        ? QString()
        : mode == Tag2Mode::Quick ? state.quickCoverPath() : state.coverPath();
    Found found;
    TagView view(src, state.Read_Other_Versions);
    readFields(state, view.source(), path, mode, coverFile, found);
    if (!found.cover && !coverFile.isEmpty())
        QFile::remove(coverFile);
}

void Read_Tag2(TagState& state, const QString& path, Tag2Mode mode)
{
    FileSource src(path);
    if (src.isOpen()) {
        Read_Tag2(state, src, path, mode);
        return;
    }
    // A file that cannot be opened reads as a file without a tag.
    MemorySource none{QByteArray()};
    Read_Tag2(state, none, path, mode);
}

GenreChoice Genre_From_Tcon(const QString& tcon)
{
    const QStringList& names = Genre_Names();
    const auto numbered = [&](long long n) {
        GenreChoice g;
        g.entry = n >= 0 && n <= 147 ? static_cast<int>(n) : 148;
        g.name = names[g.entry];
        return g;
    };
    if (!tcon.startsWith(QLatin1Char('('))) {
        GenreChoice g;
        g.name = tcon;
        const int index = Genre_Index(tcon);
        g.entry = index >= 0 ? index : 149;
        g.boxEnabled = index < 0;
        return g;
    }
    const auto closesAt = [&](int i) { return tcon.size() > i && tcon[i] == QLatin1Char(')'); };
    if (closesAt(2))
        return numbered(Val(tcon.mid(1, 1)));
    if (closesAt(3)) {
        const QString inner = tcon.mid(1, 2);
        if (inner == QLatin1String("RX") || inner == QLatin1String("CR"))
            return {inner == QLatin1String("RX") ? QStringLiteral("Remix") : QStringLiteral("Cover"), 149, true};
        return numbered(Val(inner));
    }
    if (closesAt(4))
        return numbered(Val(tcon.mid(1, 3)));
    return numbered(148);
}

QString Tlen_To_Time(const QString& milliseconds)
{
    const long long seconds = std::max(0LL, std::llround(Val(milliseconds) / 1000.0));
    return QStringLiteral("%1:%2")
        .arg(seconds / 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace sonorit
