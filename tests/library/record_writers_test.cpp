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

namespace {

QByteArray trackfileOf(const std::vector<QByteArray>& texts)
{
    QByteArray out;
    for (size_t i = 0; i < texts.size(); ++i)
        out += trackRecord(static_cast<int>(i) + 1, texts[i]);
    return out;
}

}  // namespace

TEST(RecordWriters, SpliceShiftsLaterRecordsAndKeepsTheirTags)
{
    LibraryFixture f;
    std::vector<QByteArray> texts = {"one", "two", "three", "four"};
    for (const QByteArray& t : texts)
        f.maker.text(t);
    ASSERT_TRUE(f.open());
    ASSERT_EQ(f.trackfile(), trackfileOf(texts));

    const QString motor = QStringLiteral("Mot\u00f6rhead|") + QString(300, QLatin1Char('x'));
    struct Step {
        const char* what;
        std::function<bool()> run;
        bool result;
        std::function<void()> expect;  // what the step does to `texts`
    };
    auto& c = f.ctx;
    const Step steps[] = {
        {"replace 2 longer", [&] { return Replace_Track_Record(c, 2, motor); }, true,
         [&] { texts[1] = motor.toUtf8(); }},
        {"replace 4 behind it", [&] { return Replace_Track_Record(c, 4, QStringLiteral("4")); }, true,
         [&] { texts[3] = "4"; }},
        {"replace 2 shorter", [&] { return Replace_Track_Record(c, 2, QStringLiteral("s")); }, true,
         [&] { texts[1] = "s"; }},
        {"blank 3", [&] { return Blank_Track_Record(c, 3); }, true, [&] { texts[2] = ""; }},
        {"append 5", [&] { return Append_Track_Record(c, 5, QStringLiteral("five")); }, true,
         [&] { texts.push_back("five"); }},
        {"truncate 5", [&] { return Truncate_At_Track_Record(c, 5); }, true, [&] { texts.pop_back(); }},
        {"truncate 4 before a free slot", [&] { return Truncate_At_Track_Record(c, 4); }, true,
         [&] { texts.pop_back(); }},
        {"replace a slot that is not there", [&] { return Replace_Track_Record(c, 9, QStringLiteral("z")); },
         false, [] {}},
        {"blank a slot that is not there", [&] { return Blank_Track_Record(c, 4); }, false, [] {}},
        {"replace with a text too long", [&] { return Replace_Track_Record(c, 1, QString(32767, QLatin1Char('a'))); },
         false, [] {}},
        {"replace with the longest text", [&] { return Replace_Track_Record(c, 1, QString(32766, QLatin1Char('a'))); },
         true, [&] { texts[0] = QByteArray(32766, 'a'); }},
    };
    for (const Step& s : steps) {
        EXPECT_EQ(s.run(), s.result) << s.what;
        s.expect();
        EXPECT_EQ(f.trackfile(), trackfileOf(texts)) << s.what;
        EXPECT_TRUE(f.temps().isEmpty()) << s.what;
    }
    EXPECT_TRUE(f.trackfile().endsWith(trackRecord(3, "")));
}

TEST(RecordWriters, AFailureAtAnyStepLeavesTheTrackfileAsItWas)
{
    LibraryFixture f;
    f.maker.text("one").text("two").text("three");
    ASSERT_TRUE(f.open());
    const QByteArray original = f.trackfile();
    auto& c = f.ctx;
    struct Writer {
        const char* name;
        std::function<bool()> run;
        QStringList steps;
        QByteArray afterSuccess;
    };
    const QStringList splice = {"backup", "copy-before", "write-record", "copy-after", "commit"};
    const Writer writers[] = {
        {"replace", [&] { return Replace_Track_Record(c, 2, QStringLiteral("TWO")); }, splice,
         trackfileOf({"one", "TWO", "three"})},
        {"blank", [&] { return Blank_Track_Record(c, 2); }, splice, trackfileOf({"one", "", "three"})},
        {"truncate", [&] { return Truncate_At_Track_Record(c, 3); }, {"backup", "copy-before", "commit"},
         trackfileOf({"one", "two"})},
        {"append", [&] { return Append_Track_Record(c, 4, QStringLiteral("four")); }, {"append"},
         trackfileOf({"one", "two", "three", "four"})},
    };
    for (const Writer& w : writers) {
        for (const QString& step : w.steps) {
            const QString at = QLatin1String(w.name) + QLatin1Char(' ') + step;
            FailAt always;
            always.step = step;
            f.lib.faults = &always;
            writeFile(f.files.trackfile, original);
            EXPECT_FALSE(w.run()) << qPrintable(at);
            EXPECT_EQ(always.asked.count(step), 5) << qPrintable(at);  // five attempts of its own
            EXPECT_EQ(f.trackfile(), original) << qPrintable(at);
            EXPECT_TRUE(f.temps().isEmpty()) << qPrintable(at) << " " << qPrintable(f.temps().join(' '));

            FailAt once;
            once.step = step;
            once.times = 1;
            f.lib.faults = &once;
            EXPECT_TRUE(w.run()) << qPrintable(at);
            EXPECT_EQ(f.trackfile(), w.afterSuccess) << qPrintable(at);
            EXPECT_TRUE(f.temps().isEmpty()) << qPrintable(at);
        }
    }
    f.lib.faults = nullptr;
}

TEST(Slots, GetIdReusesTheLowestFreeSlotAndRepairsZeros)
{
    struct Row {
        std::vector<std::int32_t> free;
        int idCount;
        const char* result;
        std::vector<std::int32_t> freeAfter;
        int idCountAfter;
    };
    const Row rows[] = {
        {{}, 4, "TRACK 5", {}, 5},
        {{5, 2, 9}, 9, "TRACK 2", {5, 9}, 9},
        {{3, 8, 6, 1}, 9, "TRACK 1", {3, 8, 6}, 9},
        {{7}, 7, "TRACK 7", {}, 7},
        {{0, 3}, 6, "TRACK 7", {3}, 7},  // an IDfile shorter than its count read as 0
        {{4, 0, 0}, 6, "TRACK 7", {4, 0}, 7},
        {{}, 32767, "", {}, 32767},  // the last slot of 16 bits is taken
        {{0}, 32767, "", {0}, 32767},
        {{9, 0}, 32767, "", {9, 0}, 32767},
        {{12}, 32767, "TRACK 12", {}, 32767},
    };
    for (const Row& r : rows) {
        LibraryFixture f;
        ASSERT_TRUE(f.open());
        const QByteArray idfileBefore = "untouched";
        writeFile(f.files.idfile, idfileBefore);
        f.lib.Free_IDs = r.free;
        f.lib.ID_COUNT = r.idCount;
        EXPECT_EQ(Get_ID(f.ctx), QLatin1String(r.result));
        EXPECT_EQ(f.lib.Free_IDs, r.freeAfter) << r.result;
        EXPECT_EQ(f.lib.ID_COUNT, r.idCountAfter) << r.result;
        const bool written = !r.free.empty() && *r.result;
        EXPECT_EQ(f.idfile(), written ? idFileBytes(r.freeAfter) : idfileBefore) << r.result;
        if (r.idCountAfter != r.idCount)
            EXPECT_EQ(f.general("ID_COUNT"), QString::number(r.idCountAfter)) << r.result;
    }
}

TEST(Slots, RemoveTrackRowBlanksOrTruncates)
{
    LibraryFixture f;
    f.maker.track(makeTrack("A", "a", "/m", "1.mp3"))
        .track(makeTrack("B", "b", "/m", "2.mp3"))
        .track(makeTrack("C", "c", "/m", "3.mp3"));
    ASSERT_TRUE(f.open());
    const QByteArray one = trackRecord(1, recordText(f.lib.MP3_List.row(0)));
    const QByteArray two = trackRecord(2, recordText(f.lib.MP3_List.row(1)));
    const QByteArray three = f.trackfile().mid(one.size() + two.size());
    auto rowOf = [&](const char* file) { return f.lib.MP3_List.find(ColFilename, QLatin1String(file)); };

    FailAt always;
    always.step = QStringLiteral("commit");
    f.lib.faults = &always;
    Remove_Track_Row(f.ctx, rowOf("2.mp3"));
    EXPECT_EQ(f.lib.MP3_List.count(), 3);
    EXPECT_EQ(always.asked.count(QStringLiteral("commit")), 25);  // five calls of five attempts
    EXPECT_EQ(f.trackfile(), one + two + three);
    f.lib.faults = nullptr;

    Remove_Track_Row(f.ctx, rowOf("2.mp3"));  // inside the file: blanked, its ID freed
    EXPECT_EQ(f.trackfile(), one + trackRecord(2, "") + three);
    EXPECT_EQ(f.idfile(), idFileBytes({2}));
    EXPECT_EQ(f.lib.Free_IDs, std::vector<std::int32_t>{2});
    EXPECT_EQ(f.general("ALBUM_COUNT"), QStringLiteral("2"));
    EXPECT_EQ(f.general("ID_COUNT"), QStringLiteral("3"));
    EXPECT_EQ(rowOf("2.mp3"), -1);

    Remove_Track_Row(f.ctx, rowOf("3.mp3"));  // the last slot: cut off, the free slot before it stays
    EXPECT_EQ(f.trackfile(), one + trackRecord(2, ""));
    EXPECT_EQ(f.idfile(), idFileBytes({2}));
    EXPECT_EQ(f.lib.ID_COUNT, 2);
    EXPECT_EQ(f.general("ID_COUNT"), QStringLiteral("2"));
    EXPECT_EQ(f.general("ALBUM_COUNT"), QStringLiteral("1"));
    EXPECT_EQ(f.column(ColFilename), QStringList{QStringLiteral("1.mp3")});
    EXPECT_TRUE(f.temps().isEmpty());
}
