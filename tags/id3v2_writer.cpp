#include "id3v2_writer.h"

#include <QFile>
#include <QIODevice>

#include "id3v2_writer_frames.h"
#include "id3v2_writer_target.h"
#include "id3v2_writer_walk.h"
#include "mpeg_info.h"
#include "other_versions.h"
#include "shell/file_copy.h"
#include "shell/helpers.h"

namespace sonorit {

namespace {

// What a writer puts in front of the kept frames.
struct OwnTag {
    QByteArray frames;    // the text frames and COMM, in the writer's order
    QString pictureFile;  // a JPEG to store as the new front cover; "" for none
};

struct Comment {
    QString language;
    QString description;
    QString text;
};

// A comment as typed against the comment as read: a changed one is "eng"
// without description; an untouched one keeps what it had.
Comment Compare_Comment(const QString& text, const QString& textRead, QString& language,
                        const QString& descriptionRead)
{
    if (text != textRead) {
        language = QStringLiteral("eng");
        return {language, QString(), text};
    }
    return {language, descriptionRead, text};
}

void Add_Text(QByteArray& out, const char* name, const QString& text, bool allowed = true)
{
    if (allowed && !text.isEmpty())
        out += Text_Frame(name, text);
}

// The frames after the title group, the same in every writer.
void Add_Tail(QByteArray& out, const TagOptions& o, const QString& va, const QString& length, const QString& genre,
              const QString& frames, const Comment& comment)
{
    Add_Text(out, "TPE2", va, o[TagOption::VariousArtists]);
    Add_Text(out, "TLEN", length, o[TagOption::Time]);
    Add_Text(out, "TCON", genre);
    Add_Text(out, "TFRM", frames, o[TagOption::AudioFrames]);
    if (o[TagOption::Comment] && !comment.text.isEmpty())
        out += Comment_Frame(comment.language, comment.description, comment.text);
}

// TPE1 TALB TRCK TYER TIT2: how the panel and quick writers begin a tag.
void Add_Leading_Frames(QByteArray& frames, const TagOptions& o, const Tag2FieldSet& f)
{
    Add_Text(frames, "TPE1", f.Artist);
    Add_Text(frames, "TALB", f.Album);
    Add_Text(frames, "TRCK", f.Track, o[TagOption::Tracknumber]);
    Add_Text(frames, "TYER", f.Year, o[TagOption::Year]);
    Add_Text(frames, "TIT2", f.Title);
}

OwnTag Panel_Tag(TagState& s, const TagOptions& o, KeepRules& rules)
{
    const Tag2FieldSet& f = s.Tag2_Fields;
    OwnTag tag;
    Add_Leading_Frames(tag.frames, o, f);
    Add_Tail(tag.frames, o, f.VA, f.Length, f.Genre, f.Frames,
             Compare_Comment(f.Comment, s.Comment_Text_Read, s.Comment_Language, s.Comment_Description));
    if (o[TagOption::CoverPicture] && s.Cover_Changed) {
        tag.pictureFile = f.Cover_File;
        rules.frontCoversGo = true;
    }
    return tag;
}

OwnTag Filename_Tag(TagState& s, const TagOptions& o, KeepRules& rules)
{
    FtTag2Fields& f = s.FT_Tag2_Fields;
    OwnTag tag;
    Add_Text(tag.frames, "TPE1", f.Artist);
    Add_Text(tag.frames, "TALB", f.Album);
    Add_Text(tag.frames, "TIT2", f.Title);
    Add_Text(tag.frames, "TRCK", f.Track, o[TagOption::Tracknumber]);
    Add_Text(tag.frames, "TYER", f.Year, o[TagOption::Year]);
    Add_Tail(tag.frames, o, f.VA, f.Length, f.Genre, f.Frames,
             Compare_Comment(f.Comment, f.Comment_Read, f.Comment_Language, f.Description));
    // Choice 2 without a usable file counts as taking the cover away.
    const QString& chosen = f.FT_Cover_Paths[2];
    const bool chosenExists = !chosen.isEmpty() && File_Exists(chosen);
    const bool removed = f.FT_Cover_Choice == 0 || (f.FT_Cover_Choice == 2 && !chosenExists);
    if (o[TagOption::CoverPicture] && f.FT_Cover_Choice == 2 && chosenExists)
        tag.pictureFile = chosen;
    rules.frontCoversGo = removed || !tag.pictureFile.isEmpty();
    rules.syltIsOwn = false;
    rules.keepSylt = o[TagOption::SyncedLyrics];
    return tag;
}

OwnTag Quick_Tag(const TagState& s, const TagOptions& o)
{
    const Tag2FieldSet& f = s.Tag2_Quick_Fields;
    OwnTag tag;
    Add_Leading_Frames(tag.frames, o, f);
    Add_Tail(tag.frames, o, f.VA, f.Length, f.Genre, f.Frames, {QStringLiteral("eng"), QString(), f.Comment});
    return tag;
}

bool Write_Picture(const QString& path, QIODevice& out)
{
    QFile image(path);
    if (!image.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = Picture_Frame_Head(image.size());
    return !head.isEmpty() && out.write(head) == head.size() && copyBlocks(image, out, image.size());
}

bool Write_Header(QIODevice& out, qint64 tagLength)
{
    const qint64 size = tagLength - 10;
    if (size < 0 || size >= (qint64(1) << 28))
        return false;  // four bytes of seven bits cannot hold it
    const QByteArray header = Tag2_Header_Bytes(quint32(size));
    return out.write(header) == header.size();
}

}  // namespace

bool Write_Tag2(Tag2Writer writer, TagState& state, const TagOptions& options, ByteSource& file, QIODevice& target)
{
    try {
        // A tag of another version, when it is read at all, is kept as the
        // v2.3 tag it reads as.
        TagView view(file, state.Read_Other_Versions);
        ByteSource& source = view.source();
        Mpeg_Info info;
        const qint64 audio = Find_First_Frame(source, info);
        if (audio == 0)
            return false;  // a file without audio gets no tag

        KeepRules rules;
        rules.keepFrontCovers = options[TagOption::CoverPicture];
        rules.dropOtherPictures = options[TagOption::DiscardOtherPictures];
        rules.dropUnlisted = options[TagOption::DiscardUnlisted];
        const OwnTag own = writer == Tag2Writer::Panel      ? Panel_Tag(state, options, rules)
                           : writer == Tag2Writer::Filename ? Filename_Tag(state, options, rules)
                                                            : Quick_Tag(state, options);

        // The size is known only when the kept frames are in: a header with
        // size 0 holds the place.
        const qint64 start = target.pos();
        if (!Write_Header(target, 10) || target.write(own.frames) != own.frames.size())
            return false;
        if (!own.pictureFile.isEmpty() && !Write_Picture(own.pictureFile, target))
            return false;
        if (Copy_Kept_Frames(source, rules, target) != WalkEnd::Done)
            return false;
        const qint64 tagEnd = target.pos();
        if (!target.seek(start) || !Write_Header(target, tagEnd - start) || !target.seek(tagEnd))
            return false;
        // An ID3v1 tag at the end travels along with the audio.
        return Copy_Source_Range(source, audio, source.size() - (audio - 1), target);
    } catch (...) {
        return false;
    }
}

bool Write_Tag2(Tag2Writer writer, TagState& state, const TagOptions& options, const QString& source,
                const QString& target)
{
    // The new file takes the old one's place: a track the user made
    // read-only is not rewritten.
    if (!Is_Writable_File(source))
        return false;
    return Build_From_Audio(source, target, [&](ByteSource& in, QIODevice& out) { return Write_Tag2(writer, state, options, in, out); });
}

}  // namespace sonorit
