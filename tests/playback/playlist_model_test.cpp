// The growing shuffle, the removal of one entry, and the album's order.
#include <gtest/gtest.h>

#include <QDir>
#include <QRandomGenerator>
#include <algorithm>

#include "playback/playlist_model.h"
#include "playback_fixture.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

PlaybackState grown(int n, std::function<double()> random = {})
{
    PlaybackState s;
    if (random)
        s.Random = std::move(random);
    for (int i = 1; i <= n; ++i)
        Grow_PlayList(s, QString("/t/%1.mp3").arg(i));
    return s;
}

std::vector<int> order(const PlaybackState& s)
{
    return std::vector<int>(s.Random_Order.begin(), s.Random_Order.begin() + s.PlayList_Count);
}

bool isPermutation(std::vector<int> v)
{
    std::sort(v.begin(), v.end());
    for (size_t i = 0; i < v.size(); ++i)
        if (v[i] != static_cast<int>(i) + 1)
            return false;
    return true;
}

}  // namespace

TEST(PlaylistModel, TheShuffleGrowsFromTheInsideAndSparesTheCurrentSlot)
{
    // One or two entries: the identity, whatever the draw.
    EXPECT_EQ(order(grown(2, draws({0.0}))), (std::vector<int>{1, 2}));

    // The third entry with no position: 0.9 draws 3 (the new slot), redrawn;
    // 0.1 draws 1, whose content moves to the end.
    EXPECT_EQ(order(grown(3, draws({0.9, 0.1}))), (std::vector<int>{3, 2, 1}));

    // Position 1 and n = 3: only 2 can come out.
    PlaybackState s = grown(2);
    s.PlayList_Pos = 1;
    s.Random = draws({0.0, 0.99, 0.5});
    Grow_PlayList(s, "/t/3.mp3");
    EXPECT_EQ(order(s), (std::vector<int>{1, 3, 2}));
    EXPECT_EQ(s.Play_File, (QStringList{"/t/1.mp3", "/t/2.mp3", "/t/3.mp3"}));

    // Many entries with the real generator: a permutation whose current slot
    // never moved.
    PlaybackState big = grown(5);
    big.PlayList_Pos = 4;
    const int current = big.randomOrder(4);
    for (int i = 6; i <= 400; ++i)
        Grow_PlayList(big, QString("/t/%1.mp3").arg(i));
    EXPECT_TRUE(isPermutation(order(big)));
    EXPECT_EQ(big.randomOrder(4), current);
    EXPECT_NE(big.randomOrder(400), 400);

    // Clearing keeps the arrays; the next entry overwrites the first.
    Clear_PlayList(big);
    EXPECT_EQ(big.PlayList_Count, 0);
    EXPECT_EQ(big.Play_File.size(), 400);
    Grow_PlayList(big, "/new.mp3");
    EXPECT_EQ(big.playFile(1), "/new.mp3");
    EXPECT_EQ(big.randomOrder(1), 1);
}

TEST(PlaylistModel, RemovalRulesTable)
{
    struct Case {
        const char* name;
        bool random;
        std::vector<int> order;
        int pos, index;
        std::vector<int> wantOrder;
        int wantPos;
    };
    const Case cases[] = {
        // Plain: the position moves down only when it stood behind.
        {"plain behind", false, {1, 2, 3, 4}, 3, 1, {1, 2, 3}, 2},
        {"plain before", false, {1, 2, 3, 4}, 1, 3, {1, 2, 3}, 1},
        {"plain last, idle", false, {1, 2, 3}, 2, 3, {1, 2}, 2},
        {"plain value c moved", false, {2, 4, 1, 3}, 1, 2, {2, 3, 1}, 1},
        // Random, the current value is not c: c's slot takes the last slot's value.
        {"random before current", true, {3, 1, 4, 2}, 1, 1, {3, 1, 2}, 3},
        {"random after current", true, {3, 1, 4, 2}, 1, 4, {3, 1, 2}, 1},
        {"random current in last slot", true, {3, 4, 1, 2}, 4, 3, {3, 2, 1}, 2},
        // Random, the current value is c.
        {"random current is c", true, {2, 4, 1, 3}, 2, 1, {2, 3, 1}, 2},
        {"random current c in last slot", true, {2, 3, 1, 4}, 4, 2, {2, 3, 1}, 2},
    };
    for (const Case& c : cases) {
        PlaybackState s;
        const int n = static_cast<int>(c.order.size());
        for (int i = 1; i <= n; ++i)
            s.Play_File << QString("/t/%1").arg(i);
        s.Random_Order = c.order;
        s.PlayList_Count = n;
        s.PlayList_Pos = c.pos;
        s.Random_On = c.random;
        Remove_PlayList_Entry(s, c.index);
        EXPECT_EQ(order(s), c.wantOrder) << c.name;
        EXPECT_EQ(s.PlayList_Pos, c.wantPos) << c.name;
        EXPECT_EQ(s.PlayList_Count, n - 1) << c.name;
        EXPECT_FALSE(s.Play_File.mid(0, n - 1).contains(QString("/t/%1").arg(c.index))) << c.name;
    }
}

TEST(PlaylistModel, RemovalKeepsThePermutationAndTheCurrentTrack)
{
    // Random lists, random removals of entries other than the current one.
    QRandomGenerator gen(7);
    for (int round = 0; round < 300; ++round) {
        PlaybackState s;
        s.Random = [&gen] { return gen.generateDouble(); };
        const int n = 2 + gen.bounded(12);
        for (int i = 1; i <= n; ++i)
            Grow_PlayList(s, QString("/t/%1").arg(i));
        s.Random_On = gen.bounded(2) == 1;
        s.PlayList_Pos = 1 + gen.bounded(n);
        const QString current = s.playFile(s.currentEntry());
        int index = 1 + gen.bounded(n);
        if (index == s.currentEntry())
            index = index == n ? 1 : index + 1;
        Remove_PlayList_Entry(s, index);
        ASSERT_TRUE(isPermutation(order(s))) << round;
        ASSERT_EQ(s.playFile(s.currentEntry()), current) << round << (s.Random_On ? " random" : " plain");
    }
}

TEST(PlaylistModel, AlbumKeyAndOrder)
{
    EXPECT_EQ(Album_Sort_Key("7", "Some title"), "007 Some title");
    EXPECT_EQ(Album_Sort_Key("", "X"), "000 X");
    EXPECT_EQ(Album_Sort_Key("1002", "X"), "002 X");  // the leading digit is lost
    EXPECT_EQ(Album_Sort_Key("12/14", "X"), "012 X");

    TrackList list;
    auto add = [&](const char* artist, const char* album, const char* track, const char* title, const char* va) {
        TrackRow r;
        r[ColArtist] = artist;
        r[ColAlbum] = album;
        r[ColTrack] = track;
        r[ColTitle] = title;
        r[ColVA] = va;
        list.append(r);
    };
    add("A", "Hits", "3", "c", "Yes");      // 0
    add("B", "Hits", "1", "a", "Yes");      // 1
    add("A", "Hits", "1002", "b", "No");    // 2: same artist and album, not VA
    add("C", "Hits", "2", "z", "Yes");      // 3
    add("A", "Other", "1", "q", "No");      // 4
    add("", "Hits", "1", "n", "No");        // 5
    add("C", "", "1", "n", "Yes");          // 6

    // A compilation is collected across artists, only rows marked VA.
    EXPECT_EQ(Album_Members(list, 0), (std::vector<int>{1, 3, 0}));
    // Not VA: artist and album, VA not looked at; 1002 sorts as 002.
    EXPECT_EQ(Album_Members(list, 2), (std::vector<int>{2, 0}));
    int missing = 0;
    EXPECT_TRUE(Album_Members(list, 5, &missing).empty());
    EXPECT_EQ(missing, 2);
    EXPECT_TRUE(Album_Members(list, 6, &missing).empty());
    EXPECT_EQ(missing, 1);

    EXPECT_EQ(Artist_Members(list, 2), (std::vector<int>{0, 2, 4}));
    EXPECT_EQ(Format_Play_Time(3725), "62:05");
}

TEST(PlaylistModel, GoodTracksAreFoundPastALargeTag)
{
    TempEnv env;
    const QByteArray audio = makeMp3();
    const struct {
        const char* name;
        QByteArray bytes;
        bool good;
    } files[] = {
        {"plain.mp3", audio, true},
        {"big-tag.mp3", tag(QByteArray(64 * 1024, '\0')) + audio, true},  // the head holds no frame
        {"junk.mp3", QByteArray(40000, 'j'), false},
        {"empty.mp3", QByteArray(), false},
    };
    for (const auto& f : files) {
        writeFile(env.path(f.name), f.bytes);
        EXPECT_EQ(Is_Good_Track(env.path(f.name)), f.good) << f.name;
    }
    QDir().mkpath(env.path("folder.mp3"));
    EXPECT_FALSE(Is_Good_Track(env.path("folder.mp3")));
    EXPECT_FALSE(Is_Good_Track(env.path("missing.mp3")));
    EXPECT_FALSE(Is_Good_Track(""));
}
