// The player's picture: the first APIC frame of the tag, or the default.
#include <gtest/gtest.h>

#include "playback/covers.h"
#include "playback_fixture.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(Covers, TheFirstPictureOfTheTagBecomesPlayingJpg)
{
    PlayerFixture f;
    const QByteArray first = "\xFF\xD8\xFF\xE0 first image \xFF\xD9";
    const QByteArray second = "\xFF\xD8\xFF\xE0 second \xFF\xD9";
    const QString two = f.env.path("two.mp3");
    writeFile(two, tag(textFrame("TIT2", "x") + frame("XYZW", "unknown T-less frames end the walk") + apicFrame("image/jpeg", 3, first)
                       + apicFrame("image/jpeg", 3, second))
                       + makeMp3());
    const QString pictures = f.env.path("pictures.mp3");
    writeFile(pictures, tag(textFrame("TXXX", "user") + frame("WXYZ", "link") + apicFrame("image/jpeg", 3, first)
                            + apicFrame("image/jpeg", 3, second))
                            + makeMp3());
    const QString target = f.env.path("cover.jpg");

    // An unknown name that starts with neither T nor W stops the walk.
    EXPECT_FALSE(Extract_Cover(two, target));
    EXPECT_FALSE(QFile::exists(target));
    ASSERT_TRUE(Extract_Cover(pictures, target));
    EXPECT_EQ(readFile(target), first);

    // Load_Play_Cover replaces the old picture, or falls back on the default.
    const QString playing = Playing_Cover_Path(f.app);
    f.play.Cover_Window_Open = true;
    EXPECT_EQ(Load_Play_Cover(f.player.context(), pictures), playing);
    EXPECT_EQ(readFile(playing), first);
    EXPECT_EQ(Load_Play_Cover(f.player.context(), two), "");
    EXPECT_FALSE(QFile::exists(playing));
    EXPECT_EQ(f.view.covers, (QStringList{playing, ""}));

    // The tag panel's picture is "Cover.jpg" when the read left one.
    EXPECT_EQ(Load_Tag_Cover(f.player.context()), "");
    writeFile(f.app.Data_Folder() + "Cover.jpg", first);
    EXPECT_EQ(Load_Tag_Cover(f.player.context()), f.app.Data_Folder() + "Cover.jpg");

    // Playing shows the track's picture; the end shows the default and
    // leaves the file until the next track.
    f.entries({pictures});
    f.play.PlayList_Pos = 1;
    f.player.Play_Track();
    EXPECT_EQ(f.view.covers.last(), playing);
    f.player.Stop_Track();
    EXPECT_EQ(f.view.covers.last(), "");
    EXPECT_TRUE(QFile::exists(playing));
}
