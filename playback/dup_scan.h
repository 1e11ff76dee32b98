#pragma once
// The duplicate scan of the playlist: entries with the same Title and Artist
// (exact text) form a group; groups come in the order of their first entry,
// as a pairwise walk would find them, but are found through a hash map so
// that a list of many thousand entries scans at once.
#include <QString>
#include <vector>

#include "playback/playlist_commands.h"

namespace sonorit {

struct DupGroup {
    QString name;              // " 'Title' by 'Artist' "
    std::vector<int> entries;  // from 1, rising; the first is Dup_First
};

// The groups of the lists of titles and artists (entry i at [i - 1]).
std::vector<DupGroup> Find_Duplicates(const std::vector<QString>& titles, const std::vector<QString>& artists);

class DupScan {
public:
    explicit DupScan(PlaylistCommands& commands);

    // mnu_Playlist_Duplicates: nothing with fewer than two entries (false);
    // scans; without duplicates the message "No duplicate tracks found in
    // current playlist." and false; true when the window is to be shown.
    bool start();
    // Scans the playlist as it stands now; true when duplicates were found.
    bool scan();

    bool Scan_Finished() const { return finished_; }
    bool Dups_Found() const { return !groups_.empty(); }
    int Dup_Count() const { return static_cast<int>(groups_.size()); }
    int Dup_Current() const { return current_; }
    const std::vector<DupGroup>& groups() const { return groups_; }
    const DupGroup& currentGroup() const { return groups_[static_cast<size_t>(current_ - 1)]; }

    // What the window shows of the current group.
    QString Text0() const;
    static QString Text1Hint();                    // "Click a track from the list below ..."
    QString filenameText(int entry) const;         // "Filename: " + file name
    PlayRow entryRow(int entry) const;             // the entry's columns
    bool prevEnabled() const { return current_ > 1; }
    bool nextEnabled() const { return current_ < Dup_Count(); }
    void cmdNext();
    void cmdPrev();

    enum class Outcome { Nothing, Refused, Showing, Closed };
    // `checked` are the ticked entries of the current group (from 1).
    Outcome cmdRemove(const std::vector<int>& checked);
    Outcome cmdRescan();

private:
    PlaylistCommands& commands_;
    PlaybackContext& c_;
    std::vector<DupGroup> groups_;
    std::vector<QString> paths_;
    int current_ = 1;
    bool finished_ = false;
};

}  // namespace sonorit
