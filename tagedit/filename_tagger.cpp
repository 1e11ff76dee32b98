#include "tagedit/filename_tagger.h"

#include <QDir>
#include <QFile>

#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tagedit/panel_writes.h"
#include "tagedit/track_follow.h"
#include "tags/id3v1.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tags/tag_swap.h"
#include "tags/track_seconds.h"

namespace sonorit {

void FilenameTagger::InitFilenameTag(const QString& path, const QString& folder, const QString& file, int index,
                                     bool fromLibrary)
{
    Path = path;
    Folder = folder;
    File_Name = file;
    List_Index = index;
    From_Library = fromLibrary;
    // A name too short to have an extension is shown as it is.
    form.FilenameText = file.size() < 4 ? file : file.left(file.size() - 4);
    Read_FT_Tag();
    form.Word_Runs = Filename_Word_Runs(file);
    form.FT_Tag2_Combo_Artist = Tag_Artist;
    form.FT_Tag2_Combo_Album = Tag_Album;
    form.FT_Tag2_Combo_Title = Tag_Title;
    if (loaded)
        loaded();
}

bool FilenameTagger::Load_Library_Row(int row)
{
    const TrackList& list = c_.lib.MP3_List;
    if (row < 0 || row >= list.count())
        return false;
    const QString folder = Add_Backslash(list.field(row, ColFolder));
    const QString file = list.field(row, ColFilename);
    InitFilenameTag(folder + file, folder, file, row, true);
    return true;
}

void FilenameTagger::Follow_Selection(const QString& path, int row)
{
    if (row < 0)
        row = Library_Row_Of(c_.lib.MP3_List, path);
    if (row >= 0) {
        Load_Library_Row(row);
        return;
    }
    const QString folder = Add_Backslash(Get_Path_Folder(path));
    const QString file = Get_Path_File(path);
    InitFilenameTag(path, folder, file, static_cast<int>(Folder_Tracks(folder).indexOf(file)), false);
}

QString FilenameTagger::Load_FT_Cover() const
{
    const FtTag2Fields& f = c_.tags.FT_Tag2_Fields;
    const QString& file = f.FT_Cover_Paths[static_cast<size_t>(f.FT_Cover_Choice)];
    return !file.isEmpty() && File_Exists(file) ? file : QString();
}

void FilenameTagger::Cover_Click()
{
    int& choice = c_.tags.FT_Tag2_Fields.FT_Cover_Choice;
    choice = (choice + 1) % 3;
}

bool FilenameTagger::Choose_Cover(const QString& jpeg)
{
    QFile file(jpeg);
    if (!file.open(QIODevice::ReadOnly) || file.read(3) != QByteArray("\xFF\xD8\xFF", 3)) {
        c_.ui.message(QStringLiteral("This file is not a JPEG picture and was not taken as the cover:\n") + jpeg,
                      QStringLiteral("Cover"), Buttons::Ok, Icon::Warning);
        return false;
    }
    FtTag2Fields& f = c_.tags.FT_Tag2_Fields;
    f.FT_Cover_Paths[2] = jpeg;
    f.FT_Cover_Choice = 2;
    return true;
}

bool FilenameTagger::FT_CommandCover()
{
    const QString file = Choose_Cover_File(c_);
    return !file.isEmpty() && Choose_Cover(file);
}

FtFocus FilenameTagger::Genre_Click(int index)
{
    if (index < 0 || index > 149)
        return FtFocus::None;
    form.FT_Tag2_Combo_Genre = index;
    if (index == 149) {
        form.FT_Tag2_Text_Genre.clear();
        form.FT_Tag2_Text_Genre_Enabled = true;
        return focus = FtFocus::GenreText;
    }
    form.FT_Tag2_Text_Genre = Genre_Names()[index];
    form.FT_Tag2_Text_Genre_Enabled = false;
    return focus = FtFocus::Comment;
}

QString FilenameTagger::Digits_Typed(const QString& text, int limit)
{
    QString digits;
    for (const QChar ch : text) {
        if (ch.isDigit() && ch.unicode() < 128 && digits.size() < limit)
            digits += ch;
    }
    return digits;
}

void FilenameTagger::Fill_Fields()
{
    FtTag2Fields& f = c_.tags.FT_Tag2_Fields;
    f.Artist = form.FT_Tag2_Combo_Artist.trimmed();
    f.Album = form.FT_Tag2_Combo_Album.trimmed();
    f.Title = form.FT_Tag2_Combo_Title.trimmed();
    const QString track = form.FT_Tag2_Text_Track.trimmed();
    f.Track = track.isEmpty() ? QString() : QString::number(Val(track) + 1000).right(2);
    f.Year = form.FT_Tag2_Text_Year.trimmed();
    f.VA = form.FT_Tag2_VA ? QStringLiteral("Various Artists") : QString();
    f.Genre = form.FT_Tag2_Text_Genre.trimmed();
    if (f.Frames.isEmpty()) {
        const qint64 frames = Count_Mpeg_Frames(Path);
        if (frames > 0)
            f.Frames = QString::number(frames);
    }
    f.Comment = form.FT_Tag2_Text_Comment.trimmed();
    if (f.Comment.isEmpty())
        f.Comment = TagStamp();
    Get_Filename_Tag_Time(c_.tags, Path);
}

bool FilenameTagger::Write_Tag()
{
    if (File_Name.isEmpty())
        return false;  // nothing loaded yet
    Path = Folder + File_Name;
    TagState& state = c_.tags;
    state.Read_Other_Versions = c_.app.Tag_Read_Other;
    Fill_Fields();
    const FtTag2Fields& f = state.FT_Tag2_Fields;
    bool written = true;
    if (form.FT_Option1 != FtOption::Tag2Only) {
        Tag1Record& r = state.Tag1_Record;
        r = Tag1Record{};
        r.Artist = f.Artist;
        r.Album = f.Album;
        r.Title = f.Title;
        r.Comment = f.Comment;
        r.Track = static_cast<quint8>(Val(f.Track));
        r.Year = f.Year;
        r.Genre = static_cast<quint8>(form.FT_Tag2_Combo_Genre);
        r.ZeroByte = 0;
        if (!Write_Tag1(state, Path, c_.ui)) {
            written = false;
            c_.ui.message(QStringLiteral("MP3 tag v1.1 could not been saved"), QStringLiteral("Tag Save Failure"),
                          Buttons::Ok, Icon::Critical);
        }
    }
    if (form.FT_Option1 == FtOption::Tag1Only) {
        // The library shows the ID3v2 values: only date and size follow.
        const int row = Library_Row_Of(c_.lib.MP3_List, Path);
        if (written && row >= 0) {
            LibraryContext lc = c_.library();
            Store_Row_Record(lc, row);
        }
    } else if (Write_Through_Temp(state.Data_Folder, Path, c_.ui, [&](const QString& source, const QString& target) {
                   return Write_Tag2_Filename(state, c_.app.Tag_Options, source, target);
               })) {
        RowTags row{f.Artist, f.Album, f.Track, f.Title, f.Time, f.Year, f.Genre, form.FT_Tag2_VA};
        Follow_Tag_Write(c_, Path, row);
    } else {
        written = false;
    }
    if (form.FT_Check_Autoselect)
        Step(1);
    focus = FtFocus::Artist;
    return written;
}

QStringList FilenameTagger::Folder_Tracks(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral("*.mp3")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
}

void FilenameTagger::Step(int by)
{
    if (From_Library) {
        TrackList& list = c_.lib.MP3_List;
        const int row = Library_Row_Of(list, Folder + File_Name);
        if (list.isEmpty() || row < 0)
            return;
        const int next = row + by;
        if (next < 0 || next >= list.count())
            return;
        list.select(next);
        Load_Library_Row(next);
        return;
    }
    const QStringList files = Folder_Tracks(Folder);
    const qsizetype at = files.indexOf(File_Name);
    const qsizetype next = (at >= 0 ? at : List_Index) + by;
    if (next < 0 || next >= files.size())
        return;
    InitFilenameTag(Folder + files[next], Folder, files[next], static_cast<int>(next), false);
}

void FilenameTagger::Choose_Folder()
{
    const QString chosen = c_.ui.browseForFolder();
    if (chosen.isEmpty())
        return;
    const QString folder = Add_Backslash(chosen);
    const QStringList files = Folder_Tracks(folder);
    if (files.isEmpty()) {
        c_.ui.message(QStringLiteral("There are no mp3-tracks in this folder!"), QStringLiteral("File error"),
                      Buttons::Ok, Icon::Critical);
        return;
    }
    InitFilenameTag(folder + files.first(), folder, files.first(), 0, false);
    focus = FtFocus::Artist;
}

}  // namespace sonorit
