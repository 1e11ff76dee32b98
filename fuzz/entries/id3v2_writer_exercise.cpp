#include "fuzz/entries/id3v2_writer_exercise.h"

#include <QBuffer>

#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tags/strip.h"
#include "tags/tag_state.h"

namespace sonorit {

namespace {

TagState Filled_State(int choice)
{
    TagState s;
    Tag2FieldSet& f = s.Tag2_Fields;
    f.Artist = QStringLiteral("Die Ärzte");
    f.Album = QStringLiteral("Geräusch");
    f.Track = QStringLiteral("07");
    f.Year = QStringLiteral("2003");
    f.Title = QStringLiteral("Unrockbar");
    f.VA = QStringLiteral("Various Artists");
    f.Length = QStringLiteral("201000");
    f.Genre = QStringLiteral("Punk");
    f.Frames = QStringLiteral("7700");
    f.Comment = QStringLiteral("kept");
    s.Comment_Text_Read = QStringLiteral("kept");
    s.Comment_Language = QStringLiteral("deu");
    s.Comment_Description = QStringLiteral("note");
    s.Tag2_Quick_Fields = f;
    FtTag2Fields& ft = s.FT_Tag2_Fields;
    ft.Artist = f.Artist;
    ft.Title = f.Title;
    ft.Comment = QStringLiteral("typed anew");
    ft.FT_Cover_Choice = choice;
    return s;
}

// The options come from the input's last byte, so the fuzzer steers them.
TagOptions Options_From(ByteSource& input)
{
    const int bits = input.size() > 0 ? input.byteAt(input.size() - 1) : 0;
    TagOptions o;
    o.fill(true);
    o[TagOption::CoverPicture] = bits & 1;
    o[TagOption::DiscardOtherPictures] = bits & 2;
    o[TagOption::DiscardUnlisted] = bits & 4;
    o[TagOption::SyncedLyrics] = bits & 8;
    o[TagOption::Comment] = bits & 16;
    return o;
}

bool Write(Tag2Writer writer, int choice, const TagOptions& options, ByteSource& source, QByteArray& out)
{
    TagState state = Filled_State(choice);
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    const bool ok = Write_Tag2(writer, state, options, source, buffer);
    out = buffer.data();
    return ok;
}

QByteArray Stripped(ByteSource& source)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    return Strip_Tag2(source, buffer) ? buffer.data() : QByteArray();
}

QString Check(Tag2Writer writer, int choice, const TagOptions& options, ByteSource& input)
{
    QByteArray once;
    if (!Write(writer, choice, options, input, once))
        return {};
    const auto byte = [&](int i) { return quint8(once[i]); };
    if (once.size() < 10 || !once.startsWith(QByteArrayLiteral("ID3\x03\x00\x00")))
        return QStringLiteral("no v2.3 header");
    if ((byte(6) | byte(7) | byte(8) | byte(9)) & 0x80)
        return QStringLiteral("a size byte uses its eighth bit");
    MemorySource written(once);
    Mpeg_Info info;
    const qint64 size = qint64(byte(6)) << 21 | byte(7) << 14 | byte(8) << 7 | byte(9);
    if (Find_First_Frame(written, info) != size + 11)
        return QStringLiteral("the audio does not start where the tag ends");
    const QByteArray audio = Stripped(input);
    if (audio.isEmpty() || !once.endsWith(audio) || Stripped(written) != audio)
        return QStringLiteral("the audio changed");
    QByteArray twice;
    if (!Write(writer, choice, options, written, twice) || twice != once)
        return QStringLiteral("a second write differs");
    return {};
}

}  // namespace

QString Exercise_Tag_Writer(ByteSource& input)
{
    const TagOptions options = Options_From(input);
    const struct {
        Tag2Writer writer;
        int choice;
        const char* name;
    } runs[] = {{Tag2Writer::Panel, 0, "panel"},
                {Tag2Writer::Filename, 0, "filename, cover removed"},
                {Tag2Writer::Filename, 1, "filename, cover kept"},
                {Tag2Writer::Quick, 0, "quick"}};
    for (const auto& run : runs) {
        const QString problem = Check(run.writer, run.choice, options, input);
        if (!problem.isEmpty())
            return QLatin1String(run.name) + QStringLiteral(": ") + problem;
    }
    return {};
}

}  // namespace sonorit
