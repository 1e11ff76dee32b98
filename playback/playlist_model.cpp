#include "playlist_model.h"

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "shell/helpers.h"
#include "tags/byte_source.h"
#include "tags/mpeg_info.h"

namespace sonorit {

bool Grow_PlayList(PlaybackState& s, const QString& path)
{
    if (s.PlayList_Count >= PlaybackState::PlayList_Limit)
        return false;
    const int n = s.PlayList_Count + 1;
    if (s.Play_File.size() < n)
        s.Play_File.resize(n);
    if (static_cast<int>(s.Random_Order.size()) < n)
        s.Random_Order.resize(static_cast<size_t>(n));
    int& slotN = s.Random_Order[static_cast<size_t>(n - 1)];
    if (n < 3) {
        slotN = n;
    } else {
        // The new entry takes a random old slot; that slot's content moves to
        // the end. The slot of the current position and the last slot are
        // never drawn.
        int r = 0;
        do {
            const double d = n * s.Random() + 1;
            r = d >= 1 && d < n + 1 ? static_cast<int>(d) : 1;
        } while (r == n || r == s.PlayList_Pos);
        slotN = s.Random_Order[static_cast<size_t>(r - 1)];
        s.Random_Order[static_cast<size_t>(r - 1)] = n;
    }
    s.Play_File[n - 1] = path;
    s.PlayList_Count = n;
    return true;
}

namespace {
// The first position (from 1) in 1..last whose value is `value`; 0 if none.
int positionOf(const PlaybackState& s, int value, int last)
{
    last = std::min(last, static_cast<int>(s.Random_Order.size()));
    for (int i = 1; i <= last; ++i)
        if (s.Random_Order[static_cast<size_t>(i - 1)] == value)
            return i;
    return 0;
}

int& slot(PlaybackState& s, int position)
{
    return s.Random_Order[static_cast<size_t>(position - 1)];
}
}  // namespace

void Remove_PlayList_Entry(PlaybackState& s, int index)
{
    const int c = s.PlayList_Count;
    if (index < 1 || index > c)
        return;
    for (int i = index; i < c; ++i)
        s.Play_File[i - 1] = s.Play_File[i];

    int p = s.PlayList_Pos;
    if (s.Random_On && p >= 1 && p <= c) {
        if (slot(s, p) != c) {
            const int j = positionOf(s, c, c);
            if (j)
                slot(s, j) = slot(s, c);
            if (p == c)
                p = j;
            if (p >= 1 && index < slot(s, p)) {
                const int k = positionOf(s, slot(s, p) - 1, c - 1);
                if (k)
                    p = k;
            }
        } else {
            if (p != c)
                slot(s, p) = slot(s, c);
            const int k = positionOf(s, c - 1, c - 1);
            if (k)
                p = k;
        }
    } else {
        if (!s.Random_On && p > index)
            --p;
        const int j = positionOf(s, c, c);
        if (j)
            slot(s, j) = slot(s, c);
    }
    s.PlayList_Pos = p;
    s.PlayList_Count = c - 1;
}

void Clear_PlayList(PlaybackState& s)
{
    s.Play_List.clear();
    s.PlayList_Count = 0;
    s.PlayList_Pos = 0;
}

QString Album_Sort_Key(const QString& track, const QString& title)
{
    return QString::number(Val(track) + 1000).right(3) + QLatin1Char(' ') + title;
}

QString Format_Play_Time(long long seconds)
{
    if (seconds < 0)
        seconds = 0;
    return QStringLiteral("%1:%2").arg(seconds / 60, 2, 10, QLatin1Char('0')).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

bool Is_Good_Track(const QString& path)
{
    if (path.isEmpty())
        return false;
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return false;
    }
    QByteArray head(16384, Qt::Uninitialized);
    ssize_t got = 0;
    do
        got = ::pread(fd, head.data(), static_cast<size_t>(head.size()), 0);
    while (got < 0 && errno == EINTR);
    ::close(fd);
    if (got < 0)
        return false;
    head.truncate(got);
    // The search reads in file order, so a frame found in the head is the
    // frame a search of the whole file finds first.
    MemorySource src(head);
    if (Is_Mpeg(src))
        return true;
    return got < st.st_size && Is_Mpeg(path);
}

QString Library_Row_Path(const TrackList& list, int row)
{
    return list.field(row, ColFolder) + QLatin1Char('/') + list.field(row, ColFilename);
}

std::vector<int> Album_Members(const TrackList& list, int selected, int* missing)
{
    if (missing)
        *missing = 0;
    if (selected < 0 || selected >= list.count())
        return {};
    const TrackRow& sel = list.row(selected);
    const bool various = sel[ColVA] == QLatin1String("Yes");
    if (various ? sel[ColAlbum].isEmpty() : sel[ColArtist].isEmpty() || sel[ColAlbum].isEmpty()) {
        if (missing)
            *missing = various ? 1 : 2;
        return {};
    }
    std::vector<int> rows{selected};
    for (int i = 0; i < list.count(); ++i) {
        if (i == selected)
            continue;
        const TrackRow& r = list.row(i);
        const bool member = various ? r[ColAlbum] == sel[ColAlbum] && r[ColVA] == QLatin1String("Yes")
                                    : r[ColArtist] == sel[ColArtist] && r[ColAlbum] == sel[ColAlbum];
        if (member)
            rows.push_back(i);
    }
    std::vector<QString> keys;
    keys.reserve(rows.size());
    for (int r : rows)
        keys.push_back(Album_Sort_Key(list.field(r, ColTrack), list.field(r, ColTitle)));
    // The exchange sort decides the order of equal keys.
    for (size_t i = 0; i + 1 < rows.size(); ++i)
        for (size_t j = i + 1; j < rows.size(); ++j)
            if (QString::compare(keys[i], keys[j]) > 0) {
                std::swap(keys[i], keys[j]);
                std::swap(rows[i], rows[j]);
            }
    return rows;
}

std::vector<int> Artist_Members(const TrackList& list, int selected)
{
    std::vector<int> rows;
    if (selected < 0 || selected >= list.count())
        return rows;
    const QString artist = list.field(selected, ColArtist);
    for (int i = 0; i < list.count(); ++i)
        if (list.field(i, ColArtist) == artist)
            rows.push_back(i);
    return rows;
}

}  // namespace sonorit
