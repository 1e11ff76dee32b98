// The playlist reader on any bytes, and the writer on what it read.
#include "playback/playlist_files.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    using namespace sonorit;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const ParsedPlaylist list = Parse_Playlist(bytes, QStringLiteral("/nonexistent-playlist-folder"));
    PlaybackState s;
    s.Random = [] { return 0.5; };
    for (const PlaylistItem& item : list.items) {
        if (item.hasInfo)
            s.Play_List.append(item.info);
        if (item.hasPath) {
            ++s.PlayList_Count;
            s.Play_File << item.path;
        }
    }
    const QByteArray written = Playlist_Bytes(s);
    Parse_Playlist(written, QStringLiteral("/"));
    return 0;
}
