#include "panel_writes.h"

#include <QFile>
#include <QFileInfo>

#include "library/track_list.h"
#include "playback/playlist_model.h"
#include "playback/playback_state.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tagedit/track_follow.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tags/tag_swap.h"

namespace sonorit {

namespace {

const QString kTempName = QStringLiteral("Temp.mp3");

// Enter a track number as the Tag2 writer stores it: two digits, "00" for
// a text that is not a whole number (such as "3/12"), nothing for nothing.
QString tag2Track(const QString& typed)
{
    const QString text = Trim(typed);
    if (text.isEmpty())
        return QString();
    bool ok = false;
    const int n = text.toInt(&ok);
    return QString::number((ok ? n : 0) + 1000).right(2);
}

void fillTag1Record(Tag1Record& r, const TagPanels& panels)
{
    r.Artist = Trim(panels.Tag1_Text_Artist);
    r.Album = Trim(panels.Tag1_Text_Album);
    r.Title = Trim(panels.Tag1_Text_Title);
    r.Track = static_cast<quint8>(qBound(0LL, Val(panels.Tag1_Text_Track), 255LL));
    r.Year = panels.Tag1_Text_Year;
    r.Comment = panels.Tag1_Text_Comment;
    r.Genre = static_cast<quint8>(qBound(0, panels.Tag1_Combo_Genre, 255));
    r.ZeroByte = 0;
}

void fillTag2Fields(TagState& tags, const TagPanels& panels, const QString& path)
{
    Tag2FieldSet& f = tags.Tag2_Fields;
    f.Artist = Trim(panels.Tag2_Text_Artist);
    f.Album = Trim(panels.Tag2_Text_Album);
    f.Year = Trim(panels.Tag2_Text_Year);
    f.Title = Trim(panels.Tag2_Text_Title);
    f.Genre = Trim(panels.Tag2_Text_Genre);
    f.Comment = Trim(panels.Tag2_Text_Comment);
    f.Track = tag2Track(panels.Tag2_Text_Track);
    f.VA = panels.Tag2_Combo_VA == 1 ? QStringLiteral("Various Artists") : QString();
    tags.Cover_Changed = f.Cover_File != f.Cover_Original;
    if (f.Frames.isEmpty()) {
        const qint64 frames = Count_Mpeg_Frames(path);
        if (frames > 0)
            f.Frames = QString::number(frames);
    }
    if (f.Comment.isEmpty())
        f.Comment = TagStamp();
}

// Read again after a write, without the stamp step and without the filename
// tagger: what the file now holds.
void reread(PanelContext& p, const QString& path)
{
    if (!File_Exists(path))
        return;
    Read_Into_Panels(p.edit, p.panels, path);
    p.show();
}

// What the write keeps of the file beside the boxes: what the load read when
// the panels show this file, else a fresh look at it (the cover files of the
// data folder left alone); a picture the user chose stays chosen.
void restoreRead(TagEditContext& c, const TagPanels& panels, const QString& path)
{
    if (panels.Read.path == path) {
        Restore_Tag_Read(c.tags, panels.Read);
        return;
    }
    TagState look(c.tags.Data_Folder);
    look.Read_Other_Versions = c.app.Tag_Read_Other;
    look.Covers_To_File = false;
    Read_Tag2(look, path, Tag2Mode::Panel);
    Show_Mpeg_Info(look, path);
    PanelTagRead read = Keep_Tag_Read(look, path);
    const Tag2FieldSet& shown = panels.Read.fields;
    if (shown.Cover_File != shown.Cover_Original)
        read.fields.Cover_File = shown.Cover_File;
    Restore_Tag_Read(c.tags, read);
}

bool fileGone(PanelContext& p, const QString& path)
{
    if (File_Exists(path))
        return false;
    p.edit.ui.message(path, QStringLiteral("File not found"), Buttons::Ok, Icon::None);
    return true;
}

PanelFocus sourceList(const TagPanels& panels)
{
    return panels.Tag_Source == 2 ? PanelFocus::Play_List : PanelFocus::Library_List;
}

bool isJpegPicture(const QString& file)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(3);
    return head.size() == 3 && quint8(head[0]) == 0xFF && quint8(head[1]) == 0xD8 && quint8(head[2]) == 0xFF;
}

}  // namespace

QString Panel_Write_Path(const PanelContext& p)
{
    const TagPanels& panels = p.panels;
    if (panels.Tag_Source == 2) {
        const PlaybackState* play = p.edit.play;
        const int entry = play ? play->Play_List.selected() + 1 : 0;
        if (entry < 1 || entry > play->PlayList_Count)
            return QString();
        // A WAV or WMA entry loaded nothing: the panels show another track.
        const QString path = play->playFile(entry);
        return Is_Wav_Or_Wma(path) ? QString() : path;
    }
    const TrackList& list = p.edit.lib.MP3_List;
    const int row = list.selected();
    if (row < 0 || row >= list.count())
        return QString();
    return Library_Row_Path(list, row);
}

bool Write_Panel_Tag1(PanelContext& p, const QString& path)
{
    TagEditContext& c = p.edit;
    fillTag1Record(c.tags.Tag1_Record, p.panels);
    const bool written = !fileGone(p, path) && Write_Tag1(c.tags, path, c.ui);
    if (!written) {
        c.ui.message(QStringLiteral("MP3 tag v1.1 could not been saved"), QStringLiteral("Tag Save Failure"),
                     Buttons::Ok, Icon::None);
        return false;
    }
    // The row's tag columns show the ID3v2 values; only date and size follow.
    const int row = Library_Row_Of(c.lib.MP3_List, path);
    if (row >= 0) {
        LibraryContext lc = c.library();
        Store_Row_Record(lc, row);
    }
    return true;
}

bool Write_Panel_Tag2(PanelContext& p, const QString& path)
{
    TagEditContext& c = p.edit;
    if (fileGone(p, path))
        return false;
    restoreRead(c, p.panels, path);
    fillTag2Fields(c.tags, p.panels, path);
    const bool written = Write_Through_Temp(
        c.app.Data_Folder(), path, c.ui,
        [&](const QString& source, const QString& target) {
            return Write_Tag2_Panel(c.tags, c.app.Tag_Options, source, target);
        },
        [&] { reread(p, path); });
    if (!written)
        return false;
    reread(p, path);
    const TagPanels& panels = p.panels;
    RowTags row;
    row.Artist = panels.Tag2_Text_Artist;
    row.Album = panels.Tag2_Text_Album;
    row.Track = panels.Tag2_Text_Track;
    row.Title = panels.Tag2_Text_Title;
    row.Time = panels.Tag2_Text_Time;
    row.Year = panels.Tag2_Text_Year;
    row.Genre = panels.Tag2_Text_Genre;
    row.VA = panels.Tag2_Combo_VA == 1;
    Follow_Tag_Write(c, path, row);
    return true;
}

WriteOutcome Command_Write_Tag1(PanelContext& p)
{
    const QString path = Panel_Write_Path(p);
    if (path.isEmpty()) {
        p.moveFocus(sourceList(p.panels));
        return WriteOutcome::NothingSelected;
    }
    const bool ok = Write_Panel_Tag1(p, path);
    p.moveFocus(sourceList(p.panels));
    return ok ? WriteOutcome::Written : WriteOutcome::Failed;
}

WriteOutcome Command_Write_Tag2(PanelContext& p)
{
    const QString path = Panel_Write_Path(p);
    if (path.isEmpty()) {
        p.moveFocus(sourceList(p.panels));
        return WriteOutcome::NothingSelected;
    }
    return Write_Panel_Tag2(p, path) ? WriteOutcome::Written : WriteOutcome::Failed;
}

void CommandCopyTagv2(TagPanels& panels)
{
    Tag1Record r;
    r.Artist = Trim(panels.Tag2_Text_Artist);
    r.Album = Trim(panels.Tag2_Text_Album);
    r.Title = Trim(panels.Tag2_Text_Title);
    r.Year = Trim(panels.Tag2_Text_Year);
    const long long track = qBound(0LL, Val(panels.Tag2_Text_Track), 255LL);
    panels.Tag1_Text_Artist = Trim(r.Artist);
    panels.Tag1_Text_Album = Trim(r.Album);
    panels.Tag1_Text_Title = Trim(r.Title);
    panels.Tag1_Text_Year = Trim(r.Year);
    panels.Tag1_Text_Track = track == 0 ? QString() : Tag1_Track_Text(quint8(track));
    const int genre = panels.Tag2_Combo_Genre;
    panels.Tag1_Combo_Genre = genre >= 0 && genre < Genre_Names().size() ? genre : 148;
}

void CommandCopyTagv1(TagPanels& panels)
{
    panels.Tag2_Text_Artist = Trim(panels.Tag1_Text_Artist);
    panels.Tag2_Text_Album = Trim(panels.Tag1_Text_Album);
    panels.Tag2_Text_Title = Trim(panels.Tag1_Text_Title);
    panels.Tag2_Text_Year = Trim(panels.Tag1_Text_Year);
    const long long track = qBound(0LL, Val(panels.Tag1_Text_Track), 255LL);
    panels.Tag2_Text_Track = track == 0 ? QString() : Tag1_Track_Text(quint8(track));
    // "Other", "Unknown" and "User Defined" say nothing the Tag2 genre
    // should lose its own name for.
    const int genre = panels.Tag1_Combo_Genre;
    if (genre >= 0 && genre < 148 && genre != 12) {
        panels.Tag2_Combo_Genre = genre;
        panels.Tag2_Text_Genre = Genre_Names()[genre];
        panels.Tag2_Text_Genre_Enabled = false;
    }
}

void Tag2_Combo_Genre_Click(PanelContext& p, int entry)
{
    TagPanels& panels = p.panels;
    if (entry < 0 || entry >= Genre_Names().size())
        return;
    panels.Tag2_Combo_Genre = entry;
    if (entry == 149) {
        panels.Tag2_Text_Genre_Enabled = true;
        panels.Tag2_Text_Genre.clear();
        p.show();
        p.moveFocus(PanelFocus::Tag2_Text_Genre);
        return;
    }
    panels.Tag2_Text_Genre = Genre_Names()[entry];
    panels.Tag2_Text_Genre_Enabled = false;
    p.show();
}

QString Choose_Cover_File(TagEditContext& c)
{
    AppState& app = c.app;
    const QString start = app.Art_Folder.isEmpty() ? app.paths.Pictures_Folder : app.Art_Folder;
    const QString file = File_Dialog(c.ui, int(FileDialogMode::Open), QStringLiteral("Open"), QString(),
                                     QStringLiteral("JPEG Image Files (*.jpg)"), QStringLiteral("*.jpg"), start,
                                     QStringLiteral("jpg"), false);
    if (file.isEmpty() || !File_Exists(file) || file.right(4).toLower() != QLatin1String(".jpg"))
        return QString();
    app.Art_Folder = QFileInfo(file).absolutePath();
    app.settings.SaveSetting(QStringLiteral("Folders"), QStringLiteral("Art"), app.Art_Folder);
    return file;
}

bool Take_Cover_File(PanelContext& p, const QString& file)
{
    TagEditContext& c = p.edit;
    if (!File_Exists(file) || file.right(4).toLower() != QLatin1String(".jpg")) {
        c.ui.message(file, QStringLiteral("File not found"), Buttons::Ok, Icon::None);
        return false;
    }
    // A file named .jpg that holds no JPEG would be written into the tag as
    // a picture no player can show.
    if (!isJpegPicture(file)) {
        c.ui.message(QStringLiteral("This file is not a JPEG picture and was not taken as the cover:\n") + file,
                     QStringLiteral("Cover"), Buttons::Ok, Icon::Warning);
        return false;
    }
    const QString cover = c.tags.coverPath();
    QFile::remove(cover);
    if (!QFile::copy(file, cover)) {
        c.ui.message(QStringLiteral("The picture could not be copied to ") + cover, QStringLiteral("Cover"),
                     Buttons::Ok, Icon::Warning);
        p.panels.Cover_Tag = Shown_Tag_Cover(c.tags);
        p.show();
        return false;
    }
    c.tags.Tag2_Fields.Cover_File = file;
    p.panels.Read.fields.Cover_File = file;
    p.panels.Cover_Tag = Shown_Tag_Cover(c.tags);
    p.show();
    return true;
}

bool CommandCover(PanelContext& p)
{
    const QString file = Choose_Cover_File(p.edit);
    return !file.isEmpty() && Take_Cover_File(p, file);
}

}  // namespace sonorit
