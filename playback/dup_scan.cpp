#include "dup_scan.h"

#include <QHash>
#include <algorithm>

#include "shell/helpers.h"

namespace sonorit {

std::vector<DupGroup> Find_Duplicates(const std::vector<QString>& titles, const std::vector<QString>& artists)
{
    // The walk of every pair gives the groups in the order of their first
    // entry; one pass with a map from (title, artist) gives the same.
    const size_t n = std::min(titles.size(), artists.size());
    QHash<QString, int> firstOf;  // key -> index into `pending`
    firstOf.reserve(static_cast<qsizetype>(n));
    std::vector<std::vector<int>> pending;
    for (size_t i = 0; i < n; ++i) {
        // The NUL keeps "a" + "bc" apart from "ab" + "c".
        const QString key = titles[i] + QChar(0) + artists[i];
        const auto it = firstOf.constFind(key);
        if (it == firstOf.constEnd()) {
            firstOf.insert(key, static_cast<int>(pending.size()));
            pending.push_back({static_cast<int>(i) + 1});
        } else {
            pending[static_cast<size_t>(*it)].push_back(static_cast<int>(i) + 1);
        }
    }
    std::vector<DupGroup> groups;
    for (std::vector<int>& entries : pending) {
        if (entries.size() < 2)
            continue;
        const size_t first = static_cast<size_t>(entries.front() - 1);
        groups.push_back({QStringLiteral(" '") + titles[first] + QStringLiteral("' by '") + artists[first]
                              + QStringLiteral("' "),
                          std::move(entries)});
    }
    return groups;
}

DupScan::DupScan(PlaylistCommands& commands) : commands_(commands), c_(commands.player().context()) {}

bool DupScan::scan()
{
    finished_ = false;
    const PlaybackState& s = c_.play;
    const int n = s.PlayList_Count;
    std::vector<QString> titles(static_cast<size_t>(n)), artists(static_cast<size_t>(n));
    paths_.assign(static_cast<size_t>(n), QString());
    for (int i = 1; i <= n; ++i) {
        if (i <= s.Play_List.count()) {
            titles[static_cast<size_t>(i - 1)] = s.Play_List.field(i - 1, PlayTitle);
            artists[static_cast<size_t>(i - 1)] = s.Play_List.field(i - 1, PlayArtist);
        }
        paths_[static_cast<size_t>(i - 1)] = s.playFile(i);
    }
    groups_ = Find_Duplicates(titles, artists);
    finished_ = true;
    return Dups_Found();
}

bool DupScan::start()
{
    if (c_.play.PlayList_Count < 2)
        return false;
    current_ = 1;
    if (scan())
        return true;
    c_.ui.message(QStringLiteral("No duplicate tracks found in current playlist."), QStringLiteral("Scan result"),
                  Buttons::Ok, Icon::Information);
    return false;
}

QString DupScan::Text0() const
{
    if (groups_.empty())
        return QString();
    return QStringLiteral("Track") + currentGroup().name
        + QStringLiteral("occurs more than once in the current playlist.\r\nCheck box(es) to select for removal.");
}

QString DupScan::Text1Hint()
{
    return QStringLiteral("Click a track from the list below to view filename.");
}

QString DupScan::filenameText(int entry) const
{
    return QStringLiteral("Filename: ") + Get_Path_File(paths_.size() >= static_cast<size_t>(entry) && entry >= 1
                                                            ? paths_[static_cast<size_t>(entry - 1)]
                                                            : QString());
}

PlayRow DupScan::entryRow(int entry) const
{
    const PlayListRows& rows = c_.play.Play_List;
    return entry >= 1 && entry <= rows.count() ? rows.row(entry - 1) : PlayRow{};
}

void DupScan::cmdNext()
{
    if (nextEnabled())
        ++current_;
}

void DupScan::cmdPrev()
{
    if (prevEnabled())
        --current_;
}

DupScan::Outcome DupScan::cmdRemove(const std::vector<int>& checked)
{
    if (checked.empty() || groups_.empty())
        return Outcome::Nothing;
    if (checked.size() >= currentGroup().entries.size()) {
        c_.ui.message(QStringLiteral("Removing all instances of a duplicate track is not allowed.\r\n"
                                     "At least one track from the list must be unchecked."),
                      QStringLiteral("Can't remove all tracks"), Buttons::Ok, Icon::None);
        return Outcome::Refused;
    }
    // From the last row to the first, so the indices of the others hold.
    std::vector<int> entries = checked;
    std::sort(entries.begin(), entries.end());
    for (auto it = entries.rbegin(); it != entries.rend(); ++it)
        commands_.Playlist_Track_Delete(*it);
    if (scan()) {
        if (current_ > Dup_Count())
            current_ = Dup_Count();
        return Outcome::Showing;
    }
    c_.ui.message(QStringLiteral("No more duplicates found in the current playlist.\r\nThe window will be closed."),
                  QStringLiteral("Scan Result"), Buttons::Ok, Icon::None);
    return Outcome::Closed;
}

DupScan::Outcome DupScan::cmdRescan()
{
    if (scan()) {
        current_ = 1;
        return Outcome::Showing;
    }
    c_.ui.message(QStringLiteral("No more duplicates found in the current playlist.\r\nThe window will be closed."),
                  QStringLiteral("Scan Result"), Buttons::Ok, Icon::None);
    return Outcome::Closed;
}

}  // namespace sonorit
