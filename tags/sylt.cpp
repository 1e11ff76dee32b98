#include "sylt.h"

#include <array>
#include <cstring>

#include "frame_cursor.h"
#include "other_versions.h"
#include "tag2_header.h"

namespace sonorit {

namespace {
// The names the lyric walk passes on its way to SYLT, beside every name that
// begins with "T" or "W"; any other name ends it.
constexpr std::array<const char*, 29> kPassed = {
    "TPE1", "TALB", "TIT2", "TLEN", "AENC", "APIC", "COMM", "COMR", "ENCR", "EQUA",
    "ETCO", "GEOB", "GRID", "IPLS", "LINK", "MCDI", "MLLT", "OWNE", "PRIV", "PCNT",
    "POPM", "POSS", "RBUF", "RVAD", "RVRB", "SYTC", "UFID", "USER", "USLT"};

bool passed(const QByteArray& id)
{
    if (id.startsWith('T') || id.startsWith('W'))
        return true;
    for (const char* n : kPassed) {
        if (std::memcmp(n, id.constData(), 4) == 0)
            return true;
    }
    return false;
}

// One character of a syllable: a byte, or in encoding 1 a 16-bit unit low
// byte first. -1 at the end of the file; -2 for a unit the single-byte page
// has no character for.
int nextChar(FrameCursor& c, int encoding)
{
    if (encoding != 1)
        return c.byte();
    const int u = c.unit(false);
    return u > 255 ? -2 : u;
}

struct Line {
    QByteArray text;
    qint32 time;
};
}  // namespace

bool Parse_SYLT(LyricState& lyrics, ByteSource& src, qint64 position)
{
    const auto frame = Read_Frame_Header(src, position);
    if (!frame)
        return false;
    const qint64 size = frame->Frame_Size;
    FrameCursor c(src, position + 10);
    const int encoding = c.byte();
    for (int i = 0; i < 3; ++i)
        c.byte();  // language, dropped
    const int format = c.byte();
    const int contentType = c.byte();
    if (format != 2 || contentType != 1)
        return false;
    // The content descriptor, dropped; 16-bit units in encoding 1 without any
    // byte order mark.
    for (int ch = nextChar(c, encoding); ch != 0; ch = nextChar(c, encoding)) {
        if (ch < 0)
            return false;
    }

    std::vector<Line> lines;
    int syllables = 0;
    QByteArray lastText;
    qint32 lastTime = 0;
    while (c.consumed() < size) {
        QByteArray text;
        bool newLine = false;
        int ch = nextChar(c, encoding);
        if (ch == 10)
            newLine = true;
        else if (ch > 0 && ch != 45)
            text += static_cast<char>(ch);
        while (ch > 0) {
            ch = nextChar(c, encoding);
            if (ch > 0)
                text += static_cast<char>(ch);
        }
        // A syllable cut by the end of the file cannot be read.
        if (ch < 0)
            return false;
        unsigned char stamp[4];
        for (unsigned char& b : stamp) {
            const int v = c.byte();
            if (v < 0)
                return false;
            b = static_cast<unsigned char>(v);
        }
        const auto time = static_cast<qint32>((quint32(stamp[0]) << 24) | (quint32(stamp[1]) << 16)
                                              | (quint32(stamp[2]) << 8) | stamp[3]);
        if (newLine)
            lines.push_back({text, time});
        else if (lines.empty())
            return false;  // no line to join
        else
            lines.back().text += text;
        ++syllables;
        lastText = text;
        lastTime = time;
    }

    // Characters are bytes of the single-byte page until here.
    LyricState out;
    out.Lyric_Count = static_cast<int>(lines.size());
    out.Lyric_Text.resize(lines.size() + 1);
    out.Lyric_Time.resize(lines.size() + 1);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        out.Lyric_Text[i + 1] = fromCp1252(lines[i].text);
        out.Lyric_Time[i + 1] = lines[i].time;
        if (out.Lyric_Longest == 0 || out.Lyric_Text[i + 1].size() > out.Lyric_Text[out.Lyric_Longest].size())
            out.Lyric_Longest = static_cast<int>(i + 1);
    }
    // The syllable arrays were made anew for each syllable, so only the last
    // one keeps its entry.
    out.Syllable_Count = syllables;
    out.Syllable_Text.assign(syllables + 1, QString());
    out.Syllable_Time.assign(syllables + 1, 0);
    if (syllables > 0) {
        out.Syllable_Text[syllables] = fromCp1252(lastText);
        out.Syllable_Time[syllables] = lastTime;
    }
    out.Time_Stamp_Format = format;
    lyrics = std::move(out);
    return true;
}

bool Read_Synced_Lyrics(TagState& state, ByteSource& file)
{
    TagView view(file, state.Read_Other_Versions);
    ByteSource& src = view.source();
    const auto tag = Find_Tag2(src);
    if (!tag)
        return false;
    const qint64 end = tag->End();
    for (qint64 p = tag->firstFramePosition(); p < end;) {
        const auto frame = Read_Frame_Header(src, p);
        if (!frame)
            return false;
        if (frame->Frame_ID == "SYLT")
            return Parse_SYLT(state.Lyrics, src, p);
        if (!passed(frame->Frame_ID))
            return false;
        p += qint64(frame->Frame_Size) + 10;
    }
    return false;
}

bool Read_Synced_Lyrics(TagState& state, const QString& path)
{
    FileSource src(path);
    return src.isOpen() && Read_Synced_Lyrics(state, src);
}

}  // namespace sonorit
