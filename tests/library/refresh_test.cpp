// Refresh: what it removes, adds and reads again, what it leaves unnoticed,
// its report and the rewrite that may follow.
#include <gtest/gtest.h>

#include <QFile>
#include <utime.h>

#include "library/refresh.h"
#include "library/track_import.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QString report(int removed, int refreshed, int added)
{
    return QString("%1 tracks were removed.\r\n%2 tracks were refreshed.\r\n%3 tracks were added.")
        .arg(removed).arg(refreshed).arg(added);
}

void touchOlder(const QString& path)
{
    struct utimbuf t{1000000000, 1000000000};
    utime(QFile::encodeName(path).constData(), &t);
}

}  // namespace

TEST(Refresh, FillsAnEmptyLibraryFromItsMainFolder)
{
    WorkFixture f;
    writeTaggedMp3(f.main + "b/2.mp3", tags("B", "Bx", "2", "Two"));
    writeTaggedMp3(f.main + "a/1.mp3", tags("A", "Ax", "1", "One"));
    writeTaggedMp3(f.main + "a/Z.MP3", tags("A", "Ax", "3", "Three"));
    writeFile(f.main + "a/fake.mp3", "no audio");
    f.ui.answers = {Answer::No};
    const RefreshCounts n = mnu_Library_Refresh(f.ctx);
    EXPECT_EQ(n.added, 3);
    ASSERT_EQ(f.ui.titles(), QStringList{"Refresh Report"});
    EXPECT_EQ(f.ui.messages[0].text, report(0, 0, 3) + "\r\n\r\nDo you want to sort the tracks in the library file?");
    EXPECT_EQ(f.ui.messages[0].buttons, Buttons::YesNo);
    EXPECT_EQ(f.column(ColFilename), (QStringList{"1.mp3", "Z.MP3", "2.mp3"}));  // by folder, then name
    EXPECT_EQ(f.column(ColID), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3"}));
    EXPECT_TRUE(f.recordsMatchList());
    EXPECT_TRUE(f.ui.events.contains("label17:Reading Folder: " + f.main + "a"));
    EXPECT_TRUE(f.ui.events.contains("label18:Adding " + f.main + "a/1.mp3 to library"));
    EXPECT_FALSE(f.ui.locked);
    EXPECT_FALSE(f.lib.MP3_List.hidden());

    // Nothing changed: a plain report; only the folder with more "*.mp3"
    // names than tracks (the one that is no audio) is read again.
    f.ui.messages.clear();
    f.ui.events.clear();
    const QByteArray before = f.trackfile();
    EXPECT_EQ(mnu_Library_Refresh(f.ctx).added, 0);
    EXPECT_EQ(f.ui.messages[0].text, report(0, 0, 0));
    EXPECT_EQ(f.ui.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(f.ui.events.filter("Reading Folder"), QStringList{"label17:Reading Folder: " + f.main + "a"});
    EXPECT_EQ(f.trackfile(), before);
}

TEST(Refresh, RemovesGoneAndDuplicateTracksAndReadsFoldersWithNewFiles)
{
    WorkFixture f;
    for (const char* name : {"a/1.mp3", "a/2.mp3", "b/1.mp3", "c/1.mp3"})
        writeTaggedMp3(f.main + name, tags("A", "Ax", "1", name));
    const QString outside = f.source("out/o.mp3", tags("O", "Ox", "1", "Out"));
    Add_MP3(f.ctx, outside);
    f.ui.answers = {Answer::No};
    mnu_Library_Refresh(f.ctx);
    Add_MP3(f.ctx, f.main + "b/1.mp3");  // a duplicate row

    QFile::remove(f.main + "a/2.mp3");                                      // gone
    writeTaggedMp3(f.main + "a/3.mp3", tags("A", "Ax", "3", "New"));        // and one new in that folder
    writeTaggedMp3(f.main + "c/1.mp3", tags("C", "Cx", "1", "Changed"),     // changed, count unchanged:
                   Mp3Recipe{2.0});                                          // not noticed
    writeTaggedMp3(f.main + "b/2.mp3", tags("B", "Bx", "2", "Two"));        // new beside the duplicate
    touchOlder(f.main + "b/1.mp3");  // changed in a folder that is read: read again

    f.ui.messages.clear();
    f.ui.answers = {Answer::Yes};
    const RefreshCounts n = mnu_Library_Refresh(f.ctx);
    EXPECT_EQ(n.removed, 2);
    EXPECT_EQ(n.refreshed, 1);
    EXPECT_EQ(n.added, 2);
    EXPECT_EQ(f.ui.messages[0].text, report(2, 1, 2) + "\r\n\r\nDo you want to sort the tracks in the library file?");
    QStringList paths;
    for (int i = 0; i < f.lib.MP3_List.count(); ++i)
        paths << f.pathOf(i).mid(f.env.root().size());
    EXPECT_EQ(paths, (QStringList{"/Main/a/1.mp3", "/Main/a/3.mp3", "/Main/b/1.mp3", "/Main/b/2.mp3", "/Main/c/1.mp3",
                                  "/Src/out/o.mp3"}));
    EXPECT_EQ(f.lib.MP3_List.field(4, ColTitle), "c/1.mp3");  // the unnoticed change
    EXPECT_EQ(f.lib.MP3_List.field(2, ColLastChanged).left(4), "2001");  // read again

    // Yes to the question: the records in list order, IDs from 1, no free slot.
    EXPECT_EQ(f.trackfile(), f.listAsTrackfile());
    EXPECT_EQ(f.column(ColID), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3", "TRACK 4", "TRACK 5", "TRACK 6"}));
    EXPECT_EQ(f.idfile(), QByteArray());
    EXPECT_EQ(f.counts(), "6 of 6");
    EXPECT_TRUE(f.ui.events.contains("label17:Removing non-existing and duplicate tracks"));
    EXPECT_TRUE(f.ui.events.contains("label17:Filtering tracks covered by Library Main Folder"));
    EXPECT_TRUE(f.ui.events.contains("label18:Refreshing 1.mp3"));
}

TEST(Refresh, MergeOrderAgreesWithTheListForMixedCase)
{
    WorkFixture f;
    // Names whose order differs between plain and case-blind comparison.
    for (const char* name : {"x/B.mp3", "x/a.mp3", "X2/c.mp3", "x_/D.mp3", "\xc3\x84/e.mp3"})
        writeTaggedMp3(f.main + QString::fromUtf8(name), tags("", "", "", ""));
    f.ui.answers = {Answer::No, Answer::No};
    mnu_Library_Refresh(f.ctx);
    writeTaggedMp3(f.main + "x/C.mp3", tags("", "", "", ""));
    writeTaggedMp3(f.main + "X2/a.mp3", tags("", "", "", ""));
    f.ui.messages.clear();
    const RefreshCounts n = mnu_Library_Refresh(f.ctx);
    EXPECT_EQ(n.added, 2);  // the known files met, not added again
    EXPECT_EQ(n.removed, 0);
    EXPECT_EQ(f.lib.MP3_List.count(), 7);
}

TEST(Refresh, UpdateFailureIsReported)
{
    WorkFixture f;
    f.fill({{"a/1.mp3", tags("A", "Ax", "1", "One")}});
    FailAt fail("update-record");
    f.lib.faults = &fail;
    Update_Track_From_File(f.ctx, f.main + "a/1.mp3", 0);
    ASSERT_EQ(f.ui.titles(), QStringList{"Tag Update Error"});
    EXPECT_EQ(f.ui.messages[0].text, "Could not update tags from 1.mp3");
}
