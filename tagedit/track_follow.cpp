#include "track_follow.h"

#include "library/slots.h"
#include "library/trackfile.h"
#include "playback/playback_state.h"
#include "shell/file_stamp.h"
#include "shell/helpers.h"

namespace sonorit {

TagState Fresh_Tag_State(const AppState& app)
{
    TagState tags(app.Data_Folder());
    tags.Read_Other_Versions = app.Tag_Read_Other;
    return tags;
}

int Library_Row_Of(const TrackList& list, const QString& path)
{
    const QString folder = Get_Path_Folder(path);
    const QString file = Get_Path_File(path);
    for (int i = 0; i < list.count(); ++i) {
        if (list.field(i, ColFilename) == file && list.field(i, ColFolder) == folder)
            return i;
    }
    return -1;
}

bool Store_Row_Record(LibraryContext& c, int row)
{
    TrackList& list = c.lib.MP3_List;
    const FileStamp stamp = Read_File_Stamp(list.field(row, ColFolder) + QLatin1Char('/') + list.field(row, ColFilename));
    if (stamp.exists) {
        list.setField(row, ColLastChanged, stamp.changed);
        list.setField(row, ColFilelength, stamp.length);
    }
    return Replace_Track_Record(c, Track_ID_Of(list.field(row, ColID)), Join_Track_Record(list.row(row)));
}

bool Follow_Tag_Write(TagEditContext& c, const QString& path, const RowTags& tags, int row)
{
    bool stored = true;
    if (row == kFindRow)
        row = Library_Row_Of(c.lib.MP3_List, path);
    if (row >= 0) {
        TrackRow r = c.lib.MP3_List.row(row);
        r[ColArtist] = tags.Artist;
        r[ColAlbum] = tags.Album;
        r[ColTrack] = tags.Track;
        r[ColTitle] = tags.Title;
        r[ColTime] = tags.Time;
        r[ColYear] = tags.Year;
        r[ColGenre] = tags.Genre;
        r[ColVA] = tags.VA ? QStringLiteral("Yes") : QStringLiteral("No");
        c.lib.MP3_List.setRow(row, r);
        LibraryContext lc = c.library();
        stored = Store_Row_Record(lc, row);
    }
    if (c.play) {
        PlaybackState& p = *c.play;
        for (int i = 0; i < p.PlayList_Count && i < p.Play_File.size() && i < p.Play_List.count(); ++i) {
            if (p.Play_File[i] != path)
                continue;
            p.Play_List.setRow(i, PlayRow{tags.Artist, tags.Album, tags.Title, tags.Time});
        }
    }
    return stored;
}

}  // namespace sonorit
