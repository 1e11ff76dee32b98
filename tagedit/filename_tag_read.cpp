// The filename tagger's own read of the ID3v2 tag: the walk of the tag
// engine, filling the window's fields and controls. Unlike the panel's read it
// cuts a long track or year to zeros, shows the stamp for an empty comment
// and takes the cover to "FT_Cover.jpg".
#include <QFile>

#include "tagedit/filename_tagger.h"
#include "tags/byte_source.h"
#include "tags/frame_names.h"
#include "tags/id3v2_frames.h"
#include "tags/id3v2_reader.h"
#include "tags/other_versions.h"
#include "tags/tag2_header.h"

namespace sonorit {

namespace {
void takeText(QString& field, const QString& value)
{
    if (!value.isEmpty())
        field = value;
}
}  // namespace

QString FilenameTagger::coverFile() const { return c_.tags.Data_Folder + QStringLiteral("FT_Cover.jpg"); }

void FilenameTagger::Read_FT_Tag()
{
    TagState& state = c_.tags;
    state.Read_Other_Versions = c_.app.Tag_Read_Other;
    FtTag2Fields& f = state.FT_Tag2_Fields;
    f = FtTag2Fields{};
    f.FT_Cover_Paths[1] = coverFile();
    Tag_Artist.clear();
    Tag_Album.clear();
    Tag_Title.clear();
    form.FT_Tag2_Text_Track.clear();
    form.FT_Tag2_Text_Year.clear();
    form.FT_Tag2_VA = false;
    form.FT_Tag2_Combo_Genre = 149;
    form.FT_Tag2_Text_Genre = Filename_Genre_Names()[149];
    form.FT_Tag2_Text_Genre_Enabled = true;
    form.FT_Tag2_Text_Comment.clear();
    QFile::remove(f.FT_Cover_Paths[1]);

    FileSource file(Path);
    MemorySource none{QByteArray()};
    ByteSource& raw = file.isOpen() ? static_cast<ByteSource&>(file) : none;
    TagView view(raw, state.Read_Other_Versions);
    ByteSource& src = view.source();
    if (const auto tag = Find_Tag2(src)) {
        bool cover = false;
        for (qint64 p = tag->firstFramePosition(); p < tag->End();) {
            const auto frame = Read_Frame_Header(src, p);
            if (!frame || Classify_Frame(frame->Frame_ID) == FrameClass::Stop)
                break;
            const QByteArray& id = frame->Frame_ID;
            if (id == "TPE1")
                takeText(f.Artist, Read_Text_Frame(src, p).trimmed());
            else if (id == "TALB")
                takeText(f.Album, Read_Text_Frame(src, p).trimmed());
            else if (id == "TIT2")
                takeText(f.Title, Read_Text_Frame(src, p).trimmed());
            else if (id == "TRCK")
                takeText(f.Track, Read_Text_Frame(src, p));
            else if (id == "TYER")
                takeText(f.Year, Read_Text_Frame(src, p));
            else if (id == "TPE2")
                takeText(f.VA, Read_Text_Frame(src, p));
            else if (id == "TCON")
                takeText(f.Genre, Read_Text_Frame(src, p));
            else if (id == "TFRM")
                takeText(f.Frames, Read_Text_Frame(src, p));
            else if (id == "TLEN")
                takeText(f.Length, Read_Text_Frame(src, p));
            else if (id == "COMM")
                f.Comment = Read_Comment_Quick(state, src, p);
            else if (id == "APIC")
                cover = Extract_Picture(src, p, f.FT_Cover_Paths[1],
                                        cover ? CoverWrite::Overlay : CoverWrite::Replace)
                    || cover;
            p += qint64(frame->Frame_Size) + 10;
        }
        f.Description = state.Comment_Description;
        if (cover)
            f.FT_Cover_Choice = 1;
    }

    Tag_Artist = f.Artist;
    Tag_Album = f.Album;
    Tag_Title = f.Title;
    if (f.Track.size() >= 3)
        f.Track = QStringLiteral("00");
    if (f.Year.size() >= 5)
        f.Year = QStringLiteral("0000");
    form.FT_Tag2_Text_Track = f.Track;
    form.FT_Tag2_Text_Year = f.Year;
    form.FT_Tag2_VA = f.VA == QLatin1String("Various Artists");
    if (f.Length.size() >= 4)
        f.Time = Tlen_To_Time(f.Length);
    else
        f.Length.clear();
    // A frame count is only believed beside a length.
    if (f.Length.isEmpty() || f.Frames == QLatin1String("0"))
        f.Frames.clear();
    if (!f.Genre.isEmpty()) {
        const GenreChoice g = Genre_From_Tcon(f.Genre);
        form.FT_Tag2_Combo_Genre = g.entry;
        form.FT_Tag2_Text_Genre = g.name;
        form.FT_Tag2_Text_Genre_Enabled = g.boxEnabled;
    }
    form.FT_Tag2_Text_Comment = f.Comment.trimmed().isEmpty() ? TagStamp() : f.Comment;
}

}  // namespace sonorit
