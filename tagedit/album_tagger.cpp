#include "album_tagger.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "library/naming_commands.h"
#include "playback/covers.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tagedit/panel_writes.h"
#include "tagedit/track_follow.h"
#include "tags/byte_source.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/id3v2_writer_target.h"
#include "tags/mpeg_info.h"
#include "tags/tag_swap.h"

namespace sonorit {

namespace {

QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

void tellNoPicture(UiPort& ui, const QString& file)
{
    ui.message(QStringLiteral("This file is not a JPEG picture and was not taken as the cover:\n") + file,
               QStringLiteral("Cover"), Buttons::Ok, Icon::Warning);
}

// What a write of the album changes in the shared tag records, put back
// afterwards so that the tag panels keep what they showed.
struct SavedTagFields {
    explicit SavedTagFields(TagState& s)
        : state(s), tag1(s.Tag1_Record), tag2(s.Tag2_Fields), language(s.Comment_Language),
          description(s.Comment_Description), commentRead(s.Comment_Text_Read), coverChanged(s.Cover_Changed)
    {
    }
    ~SavedTagFields()
    {
        state.Tag1_Record = tag1;
        state.Tag2_Fields = tag2;
        state.Comment_Language = language;
        state.Comment_Description = description;
        state.Comment_Text_Read = commentRead;
        state.Cover_Changed = coverChanged;
    }
    SavedTagFields(const SavedTagFields&) = delete;
    SavedTagFields& operator=(const SavedTagFields&) = delete;

    TagState& state;
    Tag1Record tag1;
    Tag2FieldSet tag2;
    QString language, description, commentRead;
    bool coverChanged;
};

}  // namespace

QString Album_Track_File(const AlbumTrack& t) { return Add_Backslash(t.Path) + t.FileName; }

bool Is_Jpeg_File(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(3);
    return head == QByteArray("\xFF\xD8\xFF", 3);
}

std::vector<int> Album_Tag_Rows(TagEditContext& c)
{
    const TrackList& list = c.lib.MP3_List;
    if (list.selected() < 0)
        return {};
    LibraryContext lc = c.library();
    std::vector<int> rows = Album_Rows(lc, {QStringLiteral("Unknown Album"), QStringLiteral("No Album known for this Track"),
                                            QStringLiteral("Unknown Artist/Album"),
                                            QStringLiteral("No Artist/Album known for this Track")});
    std::sort(rows.begin(), rows.end(), [&list](int a, int b) {
        const long long ta = Val(list.field(a, ColTrack)), tb = Val(list.field(b, ColTrack));
        return ta != tb ? ta < tb : a < b;
    });
    return rows;
}

std::vector<int> Super_Tag_Rows(TagEditContext& c)
{
    std::vector<int> rows = c.lib.MP3_List.selectedRows();
    if (rows.size() < 2) {
        c.ui.message(QStringLiteral("Use [Shift] and/or [Ctrl] keys in combination with [Up] [Down] or mouse to make "
                                    "multiple selection in library list."),
                     QStringLiteral("Multiple file selection required"), Buttons::Ok, Icon::None);
        return {};
    }
    return rows;
}

// --- opening -----------------------------------------------------------------------

QString SuperTagging::STCover_Path() const { return c_.app.Data_Folder() + QStringLiteral("STCover.jpg"); }
QString SuperTagging::STBCover_Path() const { return c_.app.Data_Folder() + QStringLiteral("STBCover.jpg"); }

void SuperTagging::Open_Album(const std::vector<int>& rows)
{
    tracks_.clear();
    top_ = 0;
    const TrackList& list = c_.lib.MP3_List;
    for (const int row : rows) {
        const TrackRow& r = list.row(row);
        AlbumTrack t;
        t.Artist = r[ColArtist];
        t.Album = r[ColAlbum];
        t.Title = r[ColTitle];
        t.Time = r[ColTime];
        t.Year = r[ColYear];
        t.Genre = r[ColGenre];
        t.Path = r[ColFolder];
        t.FileName = r[ColFilename];
        t.VA = r[ColVA] == QLatin1String("Yes") ? QStringLiteral("Yes") : QStringLiteral("No");
        t.Real = true;
        tracks_.push_back(t);
    }
    renumber();
    marked_ = tracks_.empty() ? -1 : 0;

    const AlbumTrack first = tracks_.empty() ? AlbumTrack{} : tracks_.front();
    TextArtist = first.Artist;
    TextAlbum = first.Album;
    TextYear = first.Year;
    // A track without genre lists as "Unknown", which is the combo's own entry.
    const bool unknown = first.Genre.isEmpty() || first.Genre == Genre_Names()[148];
    const GenreChoice genre = unknown ? GenreChoice{Genre_Names()[148], 148, false} : Genre_From_Tcon(first.Genre);
    Combo_Genre = genre.entry;
    TextGenre = genre.name;
    TextGenre_Enabled = genre.boxEnabled;
    CheckVA = first.VA == QLatin1String("Yes");

    // No cover is chosen yet, so that a write leaves each track's own cover
    // unless the user picks one; a track's picture is extracted when its
    // entry is picked.
    QFile::remove(STCover_Path());
    QFile::remove(STBCover_Path());
    chosenCover_.clear();
    coverIndex_ = -1;
    pickedFile_.clear();
    fillCoverEntries();
}

// --- album-wide controls -------------------------------------------------------------

void SuperTagging::Type_Year(const QString& typed)
{
    QString digits;
    for (const QChar ch : typed) {
        if (ch.isDigit() && digits.size() < 4)
            digits += ch;
    }
    TextYear = digits;
}

void SuperTagging::Combo_Genre_Click(int entry)
{
    if (entry < 0 || entry >= Genre_Names().size())
        return;
    Combo_Genre = entry;
    TextGenre_Enabled = entry == 149;
    TextGenre = TextGenre_Enabled ? QString() : Genre_Names()[entry];
}

// --- the tracks ------------------------------------------------------------------------

int SuperTagging::File_Count() const
{
    return int(std::count_if(tracks_.begin(), tracks_.end(), [](const AlbumTrack& t) { return t.Real; }));
}

void SuperTagging::setTitle(int track, const QString& text)
{
    if (track >= 0 && track < Track_Count())
        tracks_[size_t(track)].Title = text;
}

void SuperTagging::setArtist(int track, const QString& text)
{
    if (track >= 0 && track < Track_Count())
        tracks_[size_t(track)].Artist = text;
}

void SuperTagging::renumber()
{
    for (size_t i = 0; i < tracks_.size(); ++i)
        tracks_[i].Track_Number = twoDigits(int(i) + 1);
}

void SuperTagging::clampTop() { top_ = std::clamp(top_, 0, VScroll1_Max()); }

void SuperTagging::setVScroll1(int value)
{
    top_ = value;
    clampTop();
}

int SuperTagging::Row_Track(int row) const
{
    const int track = top_ + row;
    return row >= 0 && row < Visible_Rows && track < Track_Count() ? track : -1;
}

int SuperTagging::Marker_Row() const
{
    return marked_ >= top_ && marked_ < top_ + Visible_Rows ? marked_ - top_ : -1;
}

void SuperTagging::Mark(int track)
{
    if (track >= 0 && track < Track_Count())
        marked_ = track;
}

void SuperTagging::keepMarkerShown()
{
    if (marked_ < top_)
        top_ = marked_;
    else if (marked_ >= top_ + Visible_Rows)
        top_ = marked_ - Visible_Rows + 1;
    clampTop();
}

void SuperTagging::CommandTrackPlus()
{
    AlbumTrack t;
    t.VA = tracks_.empty() ? QStringLiteral("No") : tracks_.back().VA;
    tracks_.push_back(t);
    renumber();
    if (marked_ < 0)
        marked_ = 0;
}

void SuperTagging::CommandTrackMin()
{
    const auto empty = std::find_if(tracks_.rbegin(), tracks_.rend(), [](const AlbumTrack& t) { return !t.Real; });
    if (empty == tracks_.rend())
        return;
    tracks_.erase(std::next(empty).base());
    renumber();
    marked_ = std::min(marked_, Track_Count() - 1);
    clampTop();
    fillCoverEntries();
}

void SuperTagging::swapTracks(int a, int b)
{
    std::swap(tracks_[size_t(a)], tracks_[size_t(b)]);
    renumber();
    marked_ = b;
    keepMarkerShown();
    fillCoverEntries();
}

void SuperTagging::CommandUp()
{
    if (CommandUp_Enabled())
        swapTracks(marked_, marked_ - 1);
}

void SuperTagging::CommandDown()
{
    if (CommandDown_Enabled())
        swapTracks(marked_, marked_ + 1);
}

// --- the cover -----------------------------------------------------------------------------

void SuperTagging::fillCoverEntries()
{
    // The entry picked stays picked under its new number.
    coverEntries_ = {QStringLiteral("Browse Cover")};
    coverTracks_.clear();
    if (coverIndex_ >= 1)
        coverIndex_ = -1;
    for (int i = 0; i < Track_Count(); ++i) {
        const AlbumTrack& t = tracks_[size_t(i)];
        if (!t.Real)
            continue;
        coverTracks_.push_back(i);
        coverEntries_ << QStringLiteral("Track ") + t.Track_Number + QStringLiteral(" Cover");
        if (!pickedFile_.isEmpty() && Album_Track_File(t) == pickedFile_)
            coverIndex_ = int(coverEntries_.size()) - 1;
    }
}

bool SuperTagging::ComboCover_Click(int index)
{
    if (index == 0) {
        if (!QFileInfo::exists(STBCover_Path()))
            return CommandBrowseCover();
        chosenCover_ = STBCover_Path();
        coverIndex_ = 0;
        pickedFile_.clear();
        return true;
    }
    if (index < 1 || index > int(coverTracks_.size()))
        return false;
    const AlbumTrack& t = tracks_[size_t(coverTracks_[size_t(index - 1)])];
    coverIndex_ = index;
    pickedFile_ = Album_Track_File(t);
    chosenCover_.clear();
    QFile::remove(STCover_Path());
    if (!Extract_Cover(Album_Track_File(t), STCover_Path()))
        return false;  // the track has no picture: none is chosen
    if (!Is_Jpeg_File(STCover_Path())) {
        QFile::remove(STCover_Path());
        tellNoPicture(c_.ui, Album_Track_File(t));
        return false;
    }
    chosenCover_ = STCover_Path();
    return true;
}

bool SuperTagging::CommandBrowseCover()
{
    const QString file = Choose_Cover_File(c_);
    return !file.isEmpty() && Take_Browsed_Cover(file);
}

bool SuperTagging::Take_Browsed_Cover(const QString& file)
{
    if (!Is_Jpeg_File(file)) {
        tellNoPicture(c_.ui, file);
        return false;
    }
    QFile::remove(STBCover_Path());
    if (!QFile::copy(file, STBCover_Path())) {
        c_.ui.message(QStringLiteral("The picture could not be copied:\n") + file, QStringLiteral("Cover"), Buttons::Ok,
                      Icon::Warning);
        return false;
    }
    chosenCover_ = STBCover_Path();
    coverIndex_ = 0;
    pickedFile_.clear();
    return true;
}

// --- the write -------------------------------------------------------------------------------

void SuperTagging::showProgress()
{
    if (progressed)
        progressed();
    c_.ui.yield();
}

int SuperTagging::Write_Album()
{
    Frame_Enabled = false;
    ProgressBar1_Visible = true;
    ProgressBar1_Max = Track_Count();
    ProgressBar1_Value = 0;
    int failed = 0;
    {
        const SavedTagFields saved(c_.tags);
        c_.tags.Read_Other_Versions = c_.app.Tag_Read_Other;
        for (int i = 0; i < Track_Count(); ++i) {
            AlbumTrack& t = tracks_[size_t(i)];
            if (!t.Real) {
                LabelName = QStringLiteral("Skipping empty track entree");
                showProgress();
            } else {
                LabelName = QStringLiteral("Updating ") + t.Title;
                showProgress();
                t.VA = CheckVA ? QStringLiteral("Yes") : QStringLiteral("No");
                if (!Update_Track(t, CheckVA ? t.Artist : TextArtist))
                    ++failed;
            }
            ProgressBar1_Value = i + 1;
            showProgress();
        }
    }
    ProgressBar1_Visible = false;
    Frame_Enabled = true;
    return failed;
}

bool SuperTagging::Update_Track(const AlbumTrack& t, const QString& artist)
{
    const QString path = Album_Track_File(t);
    const QString failure =
        QStringLiteral("An error occured whilst trying updating ") + path + QStringLiteral(", changes are discarded");
    // A vanished or read-only file is told once, with its name, before
    // either tag is touched.
    if (!QFileInfo(path).isFile() || !Is_Writable_File(path)) {
        c_.ui.message(failure, Tag2_Update_Failed_Title(), Buttons::Ok, Icon::None);
        return false;
    }
    TagState& s = c_.tags;
    Tag2FieldSet f;
    f.Artist = Trim(artist);
    f.Album = Trim(TextAlbum);
    f.Track = t.Track_Number;
    f.Year = TextYear;
    f.Title = Trim(t.Title);
    f.Genre = Trim(TextGenre);
    f.VA = CheckVA ? QStringLiteral("Various Artists") : QString();
    f.Comment = TagStamp();
    {
        FileSource audio(path);
        const qint64 frames = Count_Mpeg_Frames(audio);
        if (frames > 0) {
            f.Frames = QString::number(frames);
            f.Length = QString::number(qint64(double(Seconds_Per_Frame(audio)) * double(frames) * 1000.0));
        }
    }
    f.Cover_File = chosenCover_;
    s.Tag2_Fields = f;
    s.Cover_Changed = !chosenCover_.isEmpty();
    // Every comment is replaced by the stamp, in English, without a description.
    s.Comment_Text_Read.clear();
    s.Comment_Language = QStringLiteral("eng");
    s.Comment_Description.clear();

    Tag1Record r;
    r.Artist = f.Artist;
    r.Album = f.Album;
    r.Title = f.Title;
    r.Year = f.Year;
    r.Comment = QString();
    r.Track = quint8(std::clamp(Val(f.Track), 0LL, 255LL));
    r.Genre = quint8(Combo_Genre);
    r.ZeroByte = 0;
    s.Tag1_Record = r;
    if (!Write_Tag1(s, path, c_.ui))
        c_.ui.message(QStringLiteral("MP3 tag v1.1 could not been saved"), QStringLiteral("Tag Save Failure"), Buttons::Ok,
                      Icon::None);

    const TagOptions& options = c_.app.Tag_Options;
    const bool written = Write_Through_Temp(
        c_.app.Data_Folder(), path, c_.ui,
        [&s, &options](const QString& source, const QString& target) {
            return Write_Tag2_Panel(s, options, source, target);
        },
        {}, failure);
    if (!written)
        return false;

    RowTags row;
    row.Artist = f.Artist;
    row.Album = f.Album;
    row.Track = f.Track;
    row.Title = f.Title;
    row.Time = !t.Time.isEmpty() || f.Length.isEmpty() ? t.Time : Tlen_To_Time(f.Length);
    row.Year = f.Year;
    row.Genre = f.Genre;
    row.VA = CheckVA;
    Follow_Tag_Write(c_, path, row);
    return true;
}

}  // namespace sonorit
