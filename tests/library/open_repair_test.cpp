// Damage that the open repairs by rewriting the library from what it read:
// the writers find slots by tag and length and the list names slots by its ID
// column, so all three must agree with the file afterwards.
#include <gtest/gtest.h>

#include "library/trackfile.h"
#include "tests/library/library_fixture.h"

namespace sonorit::test {
namespace {

QByteArray expectedFile(const std::vector<TrackRow>& rowsInListOrder)
{
    QByteArray bytes;
    int id = 1;
    for (TrackRow row : rowsInListOrder) {
        row[ColID] = QStringLiteral("TRACK ") + QString::number(id);
        bytes += trackRecord(id++, recordText(row));
    }
    return bytes;
}

TEST(OpenRepair, LengthTagAndIdMismatchesAndRecordsBeyondTheCountAreRewritten)
{
    const TrackRow a = makeTrack(QStringLiteral("A"), QStringLiteral("One"), QStringLiteral("/m/a"), QStringLiteral("1.mp3"));
    const TrackRow b = makeTrack(QStringLiteral("B"), QStringLiteral("Two"), QStringLiteral("/m/b"), QStringLiteral("2.mp3"));
    const TrackRow d = makeTrack(QStringLiteral("D"), QStringLiteral("Four"), QStringLiteral("/m/d"), QStringLiteral("4.mp3"));

    struct Case {
        const char* name;
        std::function<void(LibraryFixture&)> damage;
    };
    const std::vector<Case> cases = {
        {"length field pointing past the end",
         [&](LibraryFixture& f) {
             f.maker.track(a).track(b).track(d);
             f.files = f.maker.write();
             QByteArray file = readFile(f.files.trackfile);
             file[file.indexOf("TRCK000002") + 13] = char(0x7f);
             writeFile(f.files.trackfile, file);
         }},
        {"ID column naming another slot",
         [&](LibraryFixture& f) {
             TrackRow wrong = b;
             wrong[ColID] = QStringLiteral("TRACK 9");
             f.maker.track(a).text(recordText(wrong)).track(d);
             f.files = f.maker.write();
         }},
        {"records behind ID_COUNT",
         [&](LibraryFixture& f) {
             f.maker.track(a).track(b).track(d).key(QStringLiteral("ID_COUNT"), QStringLiteral("1"))
                 .key(QStringLiteral("ALBUM_COUNT"), QStringLiteral("1"));
             f.files = f.maker.write();
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LibraryFixture f;
        c.damage(f);
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
        EXPECT_EQ(f.trackfile(), expectedFile({a, b, d}));
        EXPECT_EQ(f.idfile(), QByteArray());
        EXPECT_EQ(f.general("ID_COUNT"), QStringLiteral("3"));
        EXPECT_EQ(f.general("ALBUM_COUNT"), QStringLiteral("3"));
        EXPECT_EQ(f.column(ColID), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3"}));
        // And the writers find every slot again.
        EXPECT_TRUE(Replace_Track_Record(f.ctx, 2, QStringLiteral("x")));
    }
}

}  // namespace
}  // namespace sonorit::test
