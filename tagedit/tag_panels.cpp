#include "tag_panels.h"

#include "library/track_list.h"
#include "playback/playlist_model.h"
#include "playback/playback_state.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"

namespace sonorit {

int Panel_Box_Limit(PanelBox box)
{
    switch (box) {
    case PanelBox::Tag1_Text_Artist:
    case PanelBox::Tag1_Text_Album:
    case PanelBox::Tag1_Text_Title:
        return 30;
    case PanelBox::Tag1_Text_Comment:
        return 28;
    case PanelBox::Tag1_Text_Track:
    case PanelBox::Tag2_Text_Track:
        return 2;
    case PanelBox::Tag1_Text_Year:
    case PanelBox::Tag2_Text_Year:
        return 4;
    default:
        return 0;
    }
}

bool Panel_Box_Digits(PanelBox box)
{
    return box == PanelBox::Tag1_Text_Track || box == PanelBox::Tag1_Text_Year || box == PanelBox::Tag2_Text_Track
        || box == PanelBox::Tag2_Text_Year;
}

QString Filter_Typed(PanelBox box, const QString& typed)
{
    QString text;
    if (Panel_Box_Digits(box)) {
        // Printable keys other than digits are dropped; control characters
        // pass as the key handler lets them.
        text.reserve(typed.size());
        for (const QChar ch : typed) {
            if ((ch >= QLatin1Char('0') && ch <= QLatin1Char('9')) || !ch.isPrint())
                text += ch;
        }
    } else {
        text = typed;
    }
    const int limit = Panel_Box_Limit(box);
    return limit > 0 ? text.left(limit) : text;
}

QString& TagPanels::box(PanelBox b)
{
    return const_cast<QString&>(static_cast<const TagPanels*>(this)->box(b));
}

const QString& TagPanels::box(PanelBox b) const
{
    switch (b) {
    case PanelBox::Tag1_Text_Artist: return Tag1_Text_Artist;
    case PanelBox::Tag1_Text_Album: return Tag1_Text_Album;
    case PanelBox::Tag1_Text_Track: return Tag1_Text_Track;
    case PanelBox::Tag1_Text_Year: return Tag1_Text_Year;
    case PanelBox::Tag1_Text_Title: return Tag1_Text_Title;
    case PanelBox::Tag1_Text_Comment: return Tag1_Text_Comment;
    case PanelBox::Tag2_Text_Artist: return Tag2_Text_Artist;
    case PanelBox::Tag2_Text_Album: return Tag2_Text_Album;
    case PanelBox::Tag2_Text_Track: return Tag2_Text_Track;
    case PanelBox::Tag2_Text_Year: return Tag2_Text_Year;
    case PanelBox::Tag2_Text_Title: return Tag2_Text_Title;
    case PanelBox::Tag2_Text_Comment: return Tag2_Text_Comment;
    case PanelBox::Tag2_Text_Genre: break;
    }
    return Tag2_Text_Genre;
}

namespace {

void showTag1(TagPanels& p, const Tag1Record& r)
{
    p.Tag1_Text_Artist = r.Artist.shown();
    p.Tag1_Text_Album = r.Album.shown();
    p.Tag1_Text_Title = r.Title.shown();
    p.Tag1_Text_Comment = r.Comment.shown();
    p.Tag1_Text_Year = r.Year.shown();
    p.Tag1_Text_Track = Tag1_Track_Text(r.Track);
    p.Tag1_Combo_Genre = Tag1_Genre_Entry(r.Genre);
}

void showTag2(TagPanels& p, const Tag2Panel& t)
{
    p.Tag2_Text_Artist = t.Tag2_Text_Artist;
    p.Tag2_Text_Album = t.Tag2_Text_Album;
    p.Tag2_Text_Track = t.Tag2_Text_Track;
    p.Tag2_Text_Year = t.Tag2_Text_Year;
    p.Tag2_Text_Title = t.Tag2_Text_Title;
    p.Tag2_Text_Genre = t.Tag2_Text_Genre;
    p.Tag2_Text_Genre_Enabled = t.Tag2_Text_Genre_Enabled;
    p.Tag2_Text_Time = t.Tag2_Text_Time;
    p.Tag2_Text_Comment = t.Tag2_Text_Comment;
    p.Tag2_Combo_Genre = t.Tag2_Combo_Genre;
    p.Tag2_Combo_VA = t.Tag2_Combo_VA;
}

}  // namespace

bool Is_Wav_Or_Wma(const QString& path)
{
    const QString ext = path.right(3).toLower();
    return ext == QLatin1String("wav") || ext == QLatin1String("wma");
}

PanelTagRead Keep_Tag_Read(const TagState& tags, const QString& path)
{
    return PanelTagRead{path, tags.Tag2_Fields, tags.Comment_Language, tags.Comment_Description,
                        tags.Comment_Text_Read};
}

void Restore_Tag_Read(TagState& tags, const PanelTagRead& read)
{
    tags.Tag2_Fields = read.fields;
    tags.Comment_Language = read.language;
    tags.Comment_Description = read.description;
    tags.Comment_Text_Read = read.textRead;
}

QString Shown_Tag_Cover(const TagState& tags)
{
    const QString cover = tags.coverPath();
    return File_Exists(cover) ? cover : QString();
}

void Read_Into_Panels(TagEditContext& c, TagPanels& panels, const QString& path)
{
    c.tags.Read_Other_Versions = c.app.Tag_Read_Other;
    if (c.tags.Data_Folder.isEmpty())
        c.tags.Data_Folder = c.app.Data_Folder();
    Read_Tag1(c.tags, path, c.ui);
    showTag1(panels, c.tags.Tag1_Record);
    Read_Tag2(c.tags, path, Tag2Mode::Panel);
    c.tags.Cover_Changed = false;
    panels.Mpeg = Show_Mpeg_Info(c.tags, path);
    panels.Read = Keep_Tag_Read(c.tags, path);
    showTag2(panels, c.tags.Tag2_Panel);
    panels.Cover_Tag = Shown_Tag_Cover(c.tags);
    panels.Tag_Shown_Path = path;
}

bool Load_Panels(PanelContext& p, const QString& path, int row)
{
    TagEditContext& c = p.edit;
    if (!File_Exists(path)) {
        c.ui.message(path, QStringLiteral("File not found"), Buttons::Ok, Icon::None);
        return false;
    }
    Read_Into_Panels(c, p.panels, path);
    if (p.panels.Tag2_Text_Comment.isEmpty())
        p.panels.Tag2_Text_Comment = TagStamp();
    p.show();
    if (c.filenameTaggerFollow)
        c.filenameTaggerFollow(path, row);
    return true;
}

bool Select_Library_Row(PanelContext& p, int row)
{
    const TrackList& list = p.edit.lib.MP3_List;
    if (row < 0 || row >= list.count())
        return false;
    p.panels.Tag_Source = 1;
    return Load_Panels(p, Library_Row_Path(list, row), row);
}

bool Select_Playlist_Entry(PanelContext& p, int entry)
{
    p.panels.Tag_Source = 2;
    if (!p.edit.play)
        return false;
    const QString path = p.edit.play->playFile(entry);
    if (path.isEmpty() || Is_Wav_Or_Wma(path))
        return false;
    return Load_Panels(p, path, -1);
}

}  // namespace sonorit
