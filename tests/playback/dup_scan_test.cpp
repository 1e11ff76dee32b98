// The duplicate scan: groups in the order of a pairwise walk, the window's
// texts, and the removal rules.
#include <gtest/gtest.h>

#include <QRandomGenerator>

#include "playback_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

// The pairwise walk, as the groups must come out.
std::vector<DupGroup> pairwise(const std::vector<QString>& t, const std::vector<QString>& a)
{
    std::vector<DupGroup> groups;
    std::vector<bool> done(t.size());
    for (size_t i = 0; i < t.size(); ++i) {
        if (done[i])
            continue;
        for (size_t j = i + 1; j < t.size(); ++j) {
            if (done[j] || t[i] != t[j] || a[i] != a[j])
                continue;
            done[j] = true;
            if (groups.empty() || groups.back().entries.front() != static_cast<int>(i) + 1)
                groups.push_back({" '" + t[i] + "' by '" + a[i] + "' ", {static_cast<int>(i) + 1}});
            groups.back().entries.push_back(static_cast<int>(j) + 1);
        }
    }
    return groups;
}

}  // namespace

TEST(DupScan, GroupsAreThoseOfThePairwiseWalk)
{
    const std::vector<QString> titles{"T", "T", "U", "T", "t", "T", "U", "V"};
    const std::vector<QString> artists{"A", "A", "A", "B", "A", "A", "A", "A"};
    const auto groups = Find_Duplicates(titles, artists);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].entries, (std::vector<int>{1, 2, 6}));  // a capital or another artist differs
    EXPECT_EQ(groups[0].name, " 'T' by 'A' ");
    EXPECT_EQ(groups[1].entries, (std::vector<int>{3, 7}));

    QRandomGenerator gen(3);
    for (int round = 0; round < 50; ++round) {
        std::vector<QString> t, a;
        for (int i = 0; i < 60; ++i) {
            t.push_back(QString::number(gen.bounded(8)));
            a.push_back(QString::number(gen.bounded(3)));
        }
        const auto fast = Find_Duplicates(t, a), slow = pairwise(t, a);
        ASSERT_EQ(fast.size(), slow.size());
        for (size_t g = 0; g < fast.size(); ++g) {
            EXPECT_EQ(fast[g].entries, slow[g].entries);
            EXPECT_EQ(fast[g].name, slow[g].name);
        }
    }
}

TEST(DupScan, RemovalRefusesAWholeGroupAndRescans)
{
    PlayerFixture f;
    DupScan scan(f.cmds);
    f.entries({"/1.mp3"});
    EXPECT_FALSE(scan.start());  // fewer than two entries: nothing at all
    EXPECT_TRUE(f.ui.messages.empty());

    const QString a = f.mp3("a.mp3"), b = f.mp3("b.mp3"), c = f.mp3("c.mp3"), d = f.mp3("d.mp3");
    f.entries({a, b, c, d});
    const PlayRow rows[] = {{"x", "", "other", ""}, {"A", "", "T", ""}, {"B", "", "T", ""}, {"A", "", "T", ""}, {"A", "", "T", ""}};
    for (int i = 0; i < 5; ++i)
        for (int col = 0; col < PlayColumnCount; ++col)
            const_cast<PlayRow&>(f.play.Play_List.row(i))[col] = rows[i][col];
    ASSERT_TRUE(scan.start());
    EXPECT_EQ(scan.Dup_Count(), 1);
    EXPECT_EQ(scan.currentGroup().entries, (std::vector<int>{2, 4, 5}));
    EXPECT_EQ(scan.Text0(), "Track 'T' by 'A' occurs more than once in the current playlist.\r\n"
                            "Check box(es) to select for removal.");
    EXPECT_EQ(scan.filenameText(4), "Filename: c.mp3");
    EXPECT_FALSE(scan.prevEnabled());
    EXPECT_FALSE(scan.nextEnabled());

    EXPECT_EQ(scan.cmdRemove({}), DupScan::Outcome::Nothing);
    EXPECT_EQ(scan.cmdRemove({2, 4, 5}), DupScan::Outcome::Refused);
    EXPECT_EQ(f.ui.messages.back().title, "Can't remove all tracks");
    EXPECT_EQ(f.play.PlayList_Count, 5);

    // Removing the running track goes through the deletion: the next starts.
    f.play.PlayList_Pos = 4;
    f.player.Play_Track();
    EXPECT_EQ(scan.cmdRemove({4}), DupScan::Outcome::Showing);
    EXPECT_EQ(f.play.Now_Source, d);
    EXPECT_EQ(scan.currentGroup().entries, (std::vector<int>{2, 4}));
    EXPECT_EQ(scan.cmdRemove({2}), DupScan::Outcome::Closed);
    EXPECT_EQ(f.ui.messages.back().title, "Scan Result");
    EXPECT_EQ(f.play.Play_File.mid(0, f.play.PlayList_Count), (QStringList{"/1.mp3", b, d}));

    EXPECT_EQ(scan.cmdRescan(), DupScan::Outcome::Closed);
    f.play.PlayList_Count = 2;
    EXPECT_FALSE(scan.start());
    EXPECT_EQ(f.ui.messages.back().text, "No duplicate tracks found in current playlist.");
    EXPECT_EQ(f.ui.messages.back().title, "Scan result");
}
