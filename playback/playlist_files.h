#pragma once
// M3U playlist files: the program's own dialect ("#ZEVM3U", "#ZEVINF:" lines
// with the four columns), extended and plain M3U with absolute and relative
// entries. Lines end in CR LF; paths are written in UTF-8, and a line that is
// not UTF-8 is read as Windows-1252 so that lists of the Windows program
// still open (backslashes read as "/", drive-letter paths resolved as far as
// their files exist).
#include <QByteArray>
#include <QString>
#include <vector>

#include "playback/playlist_commands.h"

namespace sonorit {

enum class PlaylistDialect { Plain, Extended, Own };

// One item of a list as read, before any file is looked at.
struct PlaylistItem {
    bool hasInfo = false;  // own dialect: the row from the "#ZEVINF:" line
    PlayRow info;
    bool hasPath = false;  // the path line after it (the last info line may lack one)
    QString path;          // resolved: absolute, "/" separators
};

struct ParsedPlaylist {
    PlaylistDialect dialect = PlaylistDialect::Plain;
    std::vector<PlaylistItem> items;
};

// The text of one line: UTF-8 when valid, Windows-1252 otherwise.
QString Decode_Playlist_Line(const QByteArray& line);
// An entry's path: backslashes as "/", relative entries against `folder`,
// a drive-letter path ("D:\Music\x.mp3") tried as "/Music/x.mp3" and then
// with ever shorter tails under `folder`; the first that exists wins.
QString Resolve_Playlist_Entry(const QString& line, const QString& folder);
// The reader without file checks: dialect, information lines, entries. URL
// lines ("http:", "www.") and other "#" lines of foreign lists are dropped.
ParsedPlaylist Parse_Playlist(const QByteArray& bytes, const QString& folder);
// The own dialect of entries 1..PlayList_Count, CR LF, UTF-8.
QByteArray Playlist_Bytes(const PlaybackState& s);

class PlaylistFiles {
public:
    explicit PlaylistFiles(PlaylistCommands& commands);

    // The menu commands, with their dialogs through the UiPort.
    void mnu_PlayList_Open();
    void mnu_PlayList_Save();
    void mnu_PlayList_Save_As();
    void mnu_Playlist_Merge();
    void mnu_PlayList_Export();

    // The work behind them, for the command line and tests. openFile clears
    // the list, reads the file, and with `play` starts the first entry; false
    // when the file cannot be read (nothing changed then).
    bool openFile(const QString& path, bool play = true);
    // Adds the entries of another list through Add_Entree_To_PlayList; the
    // merged file does not become the current one. Saves the current file
    // afterwards when there is one.
    bool mergeFile(const QString& path);
    // Writes the own dialect; the old file is replaced only when the new one
    // is complete. Sets Playlist_File, Playlist_Name, the folder and its
    // setting when `remember`.
    bool saveTo(const QString& path, bool remember = true);
    // Copies every entry's file into the folder under its own name; returns
    // how many were copied.
    int exportTo(const QString& folder);

private:
    void rememberFile(const QString& path);
    QString askForList();

    PlaylistCommands& commands_;
    PlaybackContext& c_;
};

}  // namespace sonorit
