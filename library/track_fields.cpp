#include "track_fields.h"

#include "shell/app_state.h"
#include "shell/file_stamp.h"
#include "shell/helpers.h"
#include "tags/byte_source.h"
#include "tags/id3v2_reader.h"
#include "tags/track_seconds.h"

namespace sonorit {

void Track_Fields_From_File(LibraryContext& c, const QString& path, TrackRow& row)
{
    TagState tags(c.app.Data_Folder());
    tags.Read_Other_Versions = c.app.Tag_Read_Other;
    // The tag and the length measure share one open file and its cached
    // first block.
    FileSource src(path);
    Read_Tag2(tags, src, path, Tag2Mode::Import);
    const Tag2FieldSet& t = tags.Tag2_Fields;
    row[ColArtist] = t.Artist;
    row[ColAlbum] = t.Album;
    row[ColTrack] = t.Track;
    row[ColTitle] = t.Title;
    row[ColTime] = !t.Time.isEmpty() ? t.Time
                   : src.isOpen()    ? Format_Seconds(Get_Track_Seconds(src, path, c.app.Data_Folder(), c.lib.durations))
                                     : Format_Seconds(Get_Track_Seconds(path, c.app.Data_Folder(), c.lib.durations));
    row[ColYear] = t.Year;
    row[ColGenre] = t.Genre;
    row[ColVA] = t.VA;
    row[ColFolder] = Get_Path_Folder(path);
    row[ColFilename] = Get_Path_File(path);
    const FileStamp stamp = Read_File_Stamp(path);
    row[ColLastChanged] = stamp.changed;
    row[ColFilelength] = stamp.length;
}

void Add_Row_To_Search(LibraryContext& c, const TrackRow& row)
{
    c.lib.search.Add_Search_Artist(Trim(row[ColArtist]));
    c.lib.search.Add_Search_Album(Trim(row[ColAlbum]));
    c.lib.search.Add_Search_Title(Trim(row[ColTitle]));
}

}  // namespace sonorit
