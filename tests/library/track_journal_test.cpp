// The journal beside the Trackfile: a rename of many rows writes each moved
// file's record to it at once, and whatever a kill leaves opens to rows that
// point at the files as they stand.
#include <gtest/gtest.h>

#include <QFile>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "library/naming_commands.h"
#include "library/library_lock.h"
#include "library/track_journal.h"
#include "library/track_moves.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QByteArray slots3(const QByteArray& second)
{
    return trackRecord(1, "a") + trackRecord(2, second) + trackRecord(3, "c");
}

// Before each move of a command: the Trackfile, its journal and the tracks
// on the disk as a kill at that moment would leave them.
struct Snapshots : FaultInjector {
    WorkFixture* f = nullptr;
    struct Shot {
        QByteArray trackfile, journal;
        bool hasJournal;
        QStringList files;
    };
    std::vector<Shot> shots;
    bool fail(const char* step) override
    {
        if (QLatin1String(step) == "rename-move" || QLatin1String(step) == "relocate-move") {
            const QString journal = Track_Journal_Path(f->files.trackfile);
            shots.push_back({f->trackfile(), readFile(journal), QFile::exists(journal), f->filesUnderMain()});
        }
        return false;
    }
};

}  // namespace

TEST(TrackJournal, AppliesCompleteRecordsBySlotIgnoresATornTailAndRepeatsToTheSameBytes)
{
    const QByteArray trackfile = slots3("b");
    const QByteArray longer = trackRecord(2, "a longer second");
    const QByteArray third = trackRecord(3, "c2");
    const QByteArray journal = longer + third;
    struct Case {
        const char* what;
        QByteArray journal, expected;
    } cases[] = {
        {"empty", {}, trackfile},
        {"two records", journal, trackRecord(1, "a") + longer + third},
        {"later record of a slot wins", longer + trackRecord(2, "x"), slots3("x")},
        {"slot not in the file", trackRecord(9, "z"), trackfile},
        {"torn header", longer + third.left(8), trackRecord(1, "a") + longer + trackRecord(3, "c")},
        {"torn text", longer + third.left(third.size() - 1), trackRecord(1, "a") + longer + trackRecord(3, "c")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const QByteArray once = Apply_Track_Journal(trackfile, c.journal);
        EXPECT_EQ(once, c.expected);
        EXPECT_EQ(Apply_Track_Journal(once, c.journal), once);
    }
    // Cut anywhere, a journal gives its whole records and nothing of the rest.
    for (int cut = 0; cut <= journal.size(); ++cut) {
        const QByteArray expected = cut < longer.size()   ? trackfile
                                    : cut < journal.size() ? trackRecord(1, "a") + longer + trackRecord(3, "c")
                                                           : trackRecord(1, "a") + longer + third;
        EXPECT_EQ(Apply_Track_Journal(trackfile, journal.left(cut)), expected) << "cut at " << cut;
    }
}

TEST(TrackJournal, OpeningAppliesTheJournalAndKeepsItWhileAnotherProgramHoldsTheLibrary)
{
    WorkFixture f;
    f.fill({{"old/1.mp3", tags("Abba", "Gold", "1", "1.mp3")},
            {"old/2.mp3", tags("Abba", "Gold", "2", "2.mp3")},
            {"old/3.mp3", tags("Abba", "Gold", "3", "3.mp3")}});
    const QByteArray before = f.trackfile();
    TrackRow moved = f.lib.MP3_List.row(1);
    moved[ColFolder] = f.main + "a/much/longer/folder";
    const int id = moved[ColID].mid(6).toInt();
    const QByteArray record = trackRecord(id, recordText(moved));
    const QString journal = Track_Journal_Path(f.files.trackfile);
    Close_Library(f.ctx);

    // Held elsewhere: read from the journal, both files left as they are.
    writeFile(journal, record + record.left(20));
    const int fd = ::open(QFile::encodeName(f.files.trackfile + ".lock").constData(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(::flock(fd, LOCK_EX), 0);
    ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
    EXPECT_EQ(f.lib.MP3_List.field(f.lib.MP3_List.find(ColID, moved[ColID]), ColFolder), moved[ColFolder]);
    EXPECT_EQ(f.trackfile(), before);
    EXPECT_EQ(readFile(journal), record + record.left(20));
    ::close(fd);

    // Held by this very program, as a command opens the library under its
    // lock: written into the Trackfile, the journal gone, so that no later
    // change of the Trackfile meets a stale journal at the next open.
    Close_Library(f.ctx);
    LibraryLock outer;
    ASSERT_TRUE(outer.acquire(f.files.trackfile, 0));
    ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
    EXPECT_EQ(f.lib.MP3_List.field(f.lib.MP3_List.find(ColID, moved[ColID]), ColFolder), moved[ColFolder]);
    EXPECT_FALSE(QFile::exists(journal));
    EXPECT_TRUE(f.recordsMatchList());
    // The inner lock ended with the opening; the outer one still holds.
    const int other = ::open(QFile::encodeName(f.files.trackfile + ".lock").constData(), O_RDWR);
    EXPECT_NE(::flock(other, LOCK_EX | LOCK_NB), 0);
    ::close(other);
}

TEST(TrackJournal, ARenameKilledBeforeAnyMoveOpensToRowsAtTheFilesAsTheyStand)
{
    WorkFixture f;
    for (int i = 1; i <= 12; ++i)
        writeTaggedMp3(f.main + QString("old/t%1.mp3").arg(i),
                       tags(QString("Artist %1").arg(i % 3), "Album", QString::number(i), QString("Song %1").arg(i)));
    f.fill();
    mnu_Library_Relocate_All(f.ctx);  // the rename below then changes each record's length
    f.ui.messages.clear();

    Snapshots shots;
    shots.f = &f;
    f.lib.faults = &shots;
    mnu_Library_Rename_All(f.ctx);
    f.lib.faults = nullptr;
    ASSERT_EQ(shots.shots.size(), 12u);
    EXPECT_TRUE(shots.shots.back().hasJournal) << "the records did not go to the journal";
    EXPECT_FALSE(QFile::exists(Track_Journal_Path(f.files.trackfile)));
    EXPECT_TRUE(f.recordsMatchList());

    // The Trackfile and journal of each moment put back and opened.
    for (size_t k = 0; k < shots.shots.size(); ++k) {
        SCOPED_TRACE("killed before move " + std::to_string(k + 1));
        const Snapshots::Shot& s = shots.shots[k];
        Close_Library(f.ctx);
        writeFile(f.files.trackfile, s.trackfile);
        QFile::remove(Track_Journal_Path(f.files.trackfile));
        if (s.hasJournal)
            writeFile(Track_Journal_Path(f.files.trackfile), s.journal);
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
        EXPECT_FALSE(QFile::exists(Track_Journal_Path(f.files.trackfile)));
        EXPECT_TRUE(f.recordsMatchList());
        QStringList rows;
        for (int i = 0; i < f.lib.MP3_List.count(); ++i)
            rows << f.pathOf(i).mid(f.main.size());
        rows.sort();
        EXPECT_EQ(rows, s.files.filter(".mp3"));
    }
}

TEST(TrackJournal, ABlankInASessionFlushesTheJournalFirst)
{
    WorkFixture f;
    writeFile(f.files.trackfile, slots3("b"));
    const QString journal = Track_Journal_Path(f.files.trackfile);
    Begin_Record_Batch(f.ctx);
    ASSERT_TRUE(Replace_Track_Record(f.ctx, 2, "a longer b"));
    EXPECT_EQ(f.trackfile(), slots3("b"));
    EXPECT_EQ(readFile(journal), trackRecord(2, "a longer b"));
    ASSERT_TRUE(Replace_Track_Record(f.ctx, 1, "A"));  // same length, yet journaled after the first
    EXPECT_EQ(f.trackfile(), slots3("b"));
    EXPECT_EQ(readFile(journal), trackRecord(2, "a longer b") + trackRecord(1, "A"));

    ASSERT_TRUE(Blank_Track_Record(f.ctx, 3));
    EXPECT_FALSE(QFile::exists(journal));
    EXPECT_EQ(f.trackfile(), trackRecord(1, "A") + trackRecord(2, "a longer b") + QByteArray("TRCK000003\0\0\0\1\0", 15));
    ASSERT_TRUE(Replace_Track_Record(f.ctx, 1, "B"));  // nothing journaled since: in place
    EXPECT_FALSE(QFile::exists(journal));
    End_Record_Batch(f.ctx);
    EXPECT_EQ(f.trackfile(), trackRecord(1, "B") + trackRecord(2, "a longer b") + QByteArray("TRCK000003\0\0\0\1\0", 15));
}
