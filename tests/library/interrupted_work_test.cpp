// A failure at any step of an import or a relocation: no user file is lost,
// and the library files agree with the disk again after the next open and
// refresh.
#include <gtest/gtest.h>

#include "library/naming_commands.h"
#include "library/track_import.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

const char* const kSteps[] = {"import-copy", "add-record", "append", "read", "journal", "write-record",
                              "flush",       "relocate-move", "move-record", "sort-write",
                              "sort-commit"};

// Every row's file exists and every mp3 under the Main Folder is listed once.
void expectInLineWithDisk(WorkFixture& f)
{
    QStringList listed;
    for (int i = 0; i < f.lib.MP3_List.count(); ++i) {
        EXPECT_TRUE(QFileInfo::exists(f.pathOf(i))) << f.pathOf(i).toStdString();
        listed << f.pathOf(i).mid(f.main.size());
    }
    listed.sort();
    QStringList onDisk = f.filesUnderMain().filter(".mp3");
    EXPECT_EQ(listed, onDisk);
    EXPECT_TRUE(f.recordsMatchList());
}

}  // namespace

TEST(InterruptedWork, NoStepLosesAFileOrLeavesTheLibraryAtOdds)
{
    for (const char* step : kSteps) {
        for (const int times : {1, 1 << 30}) {  // a passing failure, then a lasting one
            SCOPED_TRACE(std::string(step) + (times == 1 ? " once" : " always"));
            WorkFixture f;
            f.fill({{"old/1.mp3", tags("Cher", "Hits", "1", "One")}});
            const QString src = f.source("in/2.mp3", tags("Abba", "Gold", "2", "Two"));
            const QByteArray bytes = readFile(src);

            FailAt fail(step, times);
            f.lib.faults = &fail;
            Import_Track(f.ctx, src);
            f.lib.MP3_List.select(0);
            mnu_Library_Relocate_All(f.ctx);
            f.lib.faults = nullptr;
            EXPECT_GT(fail.asked, 0);

            EXPECT_EQ(readFile(src), bytes);  // the source is never touched in copy mode
            const QStringList files = f.filesUnderMain();
            EXPECT_EQ(files.filter("1.mp3").size(), 1) << files.join(", ").toStdString();
            EXPECT_LE(files.filter("2.mp3").size(), 1) << files.join(", ").toStdString();
            for (const QString& rel : files.filter("2.mp3"))
                EXPECT_EQ(readFile(f.main + rel), bytes);

            Close_Library(f.ctx);
            ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
            f.ui.answers = {Answer::No};
            mnu_Library_Refresh(f.ctx);
            expectInLineWithDisk(f);
        }
    }
}
