// Two programs on one library: a change made by the other is read in before
// this one changes anything, and a lock held by the other stops a change.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <gtest/gtest.h>

#include "library/library_lock.h"
#include "library/track_import.h"
#include "library_fixture.h"
#include "tests/support/tagged_mp3.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(LibraryLock, AChangeOfTheOtherProgramIsReadBeforeOneOfThisAndALockStopsIt)
{
    LibraryFixture window;
    window.maker.track(makeTrack("A", "a", "/m", "1.mp3")).freeSlot();
    ASSERT_TRUE(window.open());
    // The other program opens the same library and fills the free slot.
    AppState otherApp{window.env.paths()};
    LibraryState otherLib;
    ScriptedUi otherUi;
    LibraryContext other{otherApp, otherLib, otherUi};
    ASSERT_TRUE(Open_Library(other, window.files.vkt));
    const QString b = window.env.path("in/b.mp3"), c = window.env.path("in/c.mp3");
    ASSERT_TRUE(writeTaggedMp3(b, {"B", "b", "2", "Bee", {}, {}}) && writeTaggedMp3(c, {"C", "c", "3", "Sea", {}, {}}));
    ASSERT_TRUE(With_Library_Lock(other, [&] { Add_MP3(other, b); }));

    // The window still believes slot 2 free; under the lock it reads again.
    ASSERT_TRUE(With_Library_Lock(window.ctx, [&] { Add_MP3(window.ctx, c); }));
    EXPECT_EQ(window.column(ColFilename), (QStringList{"1.mp3", "b.mp3", "c.mp3"}));
    EXPECT_EQ(window.column(ColID), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3"}));
    EXPECT_EQ(window.trackfile(), window.listAsTrackfile());

    // While the other holds the lock, the window changes nothing.
    // (A lock of this process counts as held by the change itself.)
    const int held = ::open(QFile::encodeName(window.files.trackfile + ".lock").constData(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    const QByteArray before = window.trackfile();
    bool ran = false;
    EXPECT_FALSE(With_Library_Lock(window.ctx, [&] { ran = true; }));
    EXPECT_FALSE(ran);
    EXPECT_EQ(window.ui.titles().last(), "Library in use");
    EXPECT_EQ(window.ui.messages.back().text, "The library is in use by another program.");
    EXPECT_EQ(window.trackfile(), before);
    ::close(held);
}
