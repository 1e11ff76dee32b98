#pragma once
// The rules that keep Play_File, Random_Order, PlayList_Count and
// PlayList_Pos in step: the shuffle that grows from the inside as entries come
// in, and the removal of one entry that keeps the current track current.
#include <QString>
#include <vector>

#include "playback/playback_state.h"
#include "library/track_list.h"

namespace sonorit {

// One more entry: count + 1, the new entry takes a random slot of the
// permutation (never the one PlayList_Pos stands in, never the last), and its
// path is stored. False (nothing changed) when the list is full.
bool Grow_PlayList(PlaybackState& s, const QString& path);

// The arrays' part of Playlist_Track_Delete (`index` from 1): Play_File
// shifted down, Random_Order without the value count, PlayList_Pos corrected
// by the random or the plain rule, count - 1. The row and the player are the
// caller's.
void Remove_PlayList_Entry(PlaybackState& s, int index);

// Empties the list: rows cleared, count and position 0, arrays kept.
void Clear_PlayList(PlaybackState& s);

// The album's sort key of a library row: the last three characters of
// (Track + 1000), a blank, the Title: "007 Some title".
QString Album_Sort_Key(const QString& track, const QString& title);

// The rows of the album of `selected` (0-based MP3_List rows) in the order
// the album commands play them: the selected row first in, then collected,
// sorted by key with an exchange sort. Empty when the album is not known;
// `missing` then names which message applies: 1 "No Album known...",
// 2 "No Artist/Album known...".
std::vector<int> Album_Members(const TrackList& list, int selected, int* missing = nullptr);

// The MP3_List rows whose Artist equals the selected row's exactly, in list
// order.
std::vector<int> Artist_Members(const TrackList& list, int selected);

// "MM:SS", minutes in at least two digits and not cut at 59.
QString Format_Play_Time(long long seconds);

// The file exists, is no folder, and passes the MPEG check. One open and one
// read of the file's head decide for nearly every file; the whole file is
// searched only when its head holds no frame.
bool Is_Good_Track(const QString& path);

// A library row's path: Folder + "/" + Filename.
QString Library_Row_Path(const TrackList& list, int row);

}  // namespace sonorit
