// The only writers of single records, the ID hand-out and the removal of a
// track: exact bytes of Trackfile, IDfile and counts after each, and an
// untouched Trackfile whenever a writer gives up.
#include <gtest/gtest.h>

#include <functional>

#include "library/slots.h"
#include "library/trackfile.h"
#include "library_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

static QByteArray trackfileOf(const std::vector<QByteArray>& texts)
{
    QByteArray out;
    for (size_t i = 0; i < texts.size(); ++i)
        out += trackRecord(int(i) + 1, texts[i]);
    return out;
}

TEST(RecordWriters, SpliceShiftsLaterRecordsAndKeepsTheirTags)
{
    LibraryFixture f;
    std::vector<QByteArray> texts = {"one", "two", "three", "four"};
    for (const QByteArray& t : texts)
        f.maker.text(t);
    ASSERT_TRUE(f.open());
    ASSERT_EQ(f.trackfile(), trackfileOf(texts));

    const QString motor = "Mot\u00f6rhead|" + QString(300, 'x');
    auto& c = f.ctx;
    // Each step works on the file the previous one left; `after` does the same to `texts`.
    const struct {
        const char* what;
        std::function<bool()> run;
        std::function<void()> after;  // none: the step fails
    } steps[] = {
        {"replace 2 longer", [&] { return Replace_Track_Record(c, 2, motor); }, [&] { texts[1] = motor.toUtf8(); }},
        {"replace 4 behind it", [&] { return Replace_Track_Record(c, 4, "4"); }, [&] { texts[3] = "4"; }},
        {"replace 2 shorter", [&] { return Replace_Track_Record(c, 2, "s"); }, [&] { texts[1] = "s"; }},
        {"blank 3", [&] { return Blank_Track_Record(c, 3); }, [&] { texts[2] = ""; }},
        {"append 5", [&] { return Append_Track_Record(c, 5, "five"); }, [&] { texts.push_back("five"); }},
        {"truncate 5", [&] { return Truncate_At_Track_Record(c, 5); }, [&] { texts.pop_back(); }},
        {"truncate 4 before a free slot", [&] { return Truncate_At_Track_Record(c, 4); }, [&] { texts.pop_back(); }},
        {"replace a slot that is not there", [&] { return Replace_Track_Record(c, 9, "z"); }, nullptr},
        {"blank a slot that is not there", [&] { return Blank_Track_Record(c, 4); }, nullptr},
        {"replace with a text too long", [&] { return Replace_Track_Record(c, 1, QString(32767, 'a')); }, nullptr},
        {"replace with the longest text", [&] { return Replace_Track_Record(c, 1, QString(32766, 'a')); },
         [&] { texts[0] = QByteArray(32766, 'a'); }},
    };
    for (const auto& s : steps) {
        EXPECT_EQ(s.run(), bool(s.after)) << s.what;
        if (s.after)
            s.after();
        EXPECT_EQ(f.trackfile(), trackfileOf(texts)) << s.what;
        EXPECT_TRUE(f.temps().isEmpty()) << s.what;
    }
}

TEST(RecordWriters, AFailureAtAnyStepLeavesTheTrackfileAsItWas)
{
    LibraryFixture f;
    f.maker.text("one").text("two").text("three");
    ASSERT_TRUE(f.open());
    const QByteArray original = f.trackfile();
    auto& c = f.ctx;
    const QStringList splice = {"read", "copy-before", "write-record", "copy-after", "commit"};
    const struct {
        const char* name;
        std::function<bool()> run;
        QStringList steps;
        QByteArray afterSuccess;
    } writers[] = {
        {"replace", [&] { return Replace_Track_Record(c, 2, "TWO!"); }, splice, trackfileOf({"one", "TWO!", "three"})},
        // A record of the same length is written over itself.
        {"replace in place", [&] { return Replace_Track_Record(c, 2, "TWO"); }, {"read", "write-record"},
         trackfileOf({"one", "TWO", "three"})},
        {"blank", [&] { return Blank_Track_Record(c, 2); }, splice, trackfileOf({"one", "", "three"})},
        {"truncate", [&] { return Truncate_At_Track_Record(c, 3); }, {"read", "copy-before", "commit"},
         trackfileOf({"one", "two"})},
        {"append", [&] { return Append_Track_Record(c, 4, "four"); }, {"append"},
         trackfileOf({"one", "two", "three", "four"})},
    };
    for (const auto& w : writers) {
        for (const QString& step : w.steps) {
            SCOPED_TRACE(w.name + (" " + step).toStdString());
            FailAt always(step), once(step, 1);
            f.lib.faults = &always;
            writeFile(f.files.trackfile, original);
            EXPECT_FALSE(w.run());
            EXPECT_EQ(always.asked, 5);  // five attempts of its own
            EXPECT_EQ(f.trackfile(), original);
            EXPECT_TRUE(f.temps().isEmpty()) << f.temps().join(' ').toStdString();

            f.lib.faults = &once;
            EXPECT_TRUE(w.run());
            EXPECT_EQ(f.trackfile(), w.afterSuccess);
            EXPECT_TRUE(f.temps().isEmpty());
        }
    }
    f.lib.faults = nullptr;
}

TEST(Slots, GetIdReusesTheLowestFreeSlotAndRepairsZeros)
{
    const struct {
        std::vector<std::int32_t> free;
        int idCount;
        const char* result;
        std::vector<std::int32_t> freeAfter;
        int idCountAfter;
    } rows[] = {
        {{}, 4, "TRACK 5", {}, 5}, {{5, 2, 9}, 9, "TRACK 2", {5, 9}, 9}, {{3, 8, 6, 1}, 9, "TRACK 1", {3, 8, 6}, 9},
        {{7}, 7, "TRACK 7", {}, 7},
        {{0, 3}, 6, "TRACK 7", {3}, 7}, {{4, 0, 0}, 6, "TRACK 7", {4, 0}, 7},  // IDfile entries missing, read as 0
        {{}, 32767, "", {}, 32767}, {{0}, 32767, "", {0}, 32767},              // the last slot of 16 bits is taken
        {{9, 0}, 32767, "", {9, 0}, 32767}, {{12}, 32767, "TRACK 12", {}, 32767},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::PrintToString(r.free) + " " + std::to_string(r.idCount));
        LibraryFixture f;
        ASSERT_TRUE(f.open());
        writeFile(f.files.idfile, "untouched");
        f.lib.Free_IDs = r.free;
        f.lib.ID_COUNT = r.idCount;
        EXPECT_EQ(Get_ID(f.ctx), r.result);
        EXPECT_EQ(f.lib.Free_IDs, r.freeAfter);
        EXPECT_EQ(f.lib.ID_COUNT, r.idCountAfter);
        EXPECT_EQ(f.idfile(), !r.free.empty() && *r.result ? idFileBytes(r.freeAfter) : "untouched");
        // Written only when it grew; the new library's file says 0.
        EXPECT_EQ(f.counts(), QString("0 of %1").arg(r.idCountAfter == r.idCount ? 0 : r.idCountAfter));
    }
}

TEST(Slots, RemoveTrackRowBlanksOrTruncates)
{
    LibraryFixture f;
    for (const char* name : {"1.mp3", "2.mp3", "3.mp3"})
        f.maker.track(makeTrack("A", "a", "/m", name));
    ASSERT_TRUE(f.open());
    const QByteArray one = trackRecord(1, recordText(f.lib.MP3_List.row(0)));
    const QByteArray two = trackRecord(2, recordText(f.lib.MP3_List.row(1)));
    const QByteArray three = f.trackfile().mid(one.size() + two.size());
    auto rowOf = [&](const char* file) { return f.lib.MP3_List.find(ColFilename, file); };

    FailAt always("commit");
    f.lib.faults = &always;
    Remove_Track_Row(f.ctx, rowOf("2.mp3"));
    EXPECT_EQ(f.lib.MP3_List.count(), 3);
    EXPECT_EQ(always.asked, 5);  // the writer's own five attempts, not five times five
    EXPECT_EQ(f.trackfile(), one + two + three);
    f.lib.faults = nullptr;

    Remove_Track_Row(f.ctx, rowOf("2.mp3"));  // inside the file: blanked, its ID freed
    EXPECT_EQ(f.trackfile(), one + trackRecord(2, "") + three);
    EXPECT_EQ(f.idfile(), idFileBytes({2}));
    EXPECT_EQ(f.lib.Free_IDs, std::vector<std::int32_t>{2});
    EXPECT_EQ(f.counts(), "2 of 3");
    EXPECT_EQ(rowOf("2.mp3"), -1);

    Remove_Track_Row(f.ctx, rowOf("3.mp3"));  // the last slot: cut off, the free slot before it stays
    EXPECT_EQ(f.trackfile(), one + trackRecord(2, ""));
    EXPECT_EQ(f.idfile(), idFileBytes({2}));
    EXPECT_EQ(f.lib.ID_COUNT, 2);
    EXPECT_EQ(f.counts(), "1 of 2");
    EXPECT_EQ(f.column(ColFilename), QStringList{"1.mp3"});
    EXPECT_TRUE(f.temps().isEmpty());
}
