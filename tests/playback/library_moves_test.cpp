// A track renamed by the library stays playable from the playlist: the
// player hands its Play_File to the library, which the rename updates.
#include <gtest/gtest.h>

#include "library/track_import.h"
#include "library/track_moves.h"
#include "playback_fixture.h"
#include "tests/library/work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(LibraryMoves, RenameKeepsThePlaylistPointingAtTheMovedFile)
{
    WorkFixture w;
    Add_MP3(w.ctx, w.source("loose/x.mp3", TrackTags{"Abba", "Gold", "3", "Waterloo", "", ""}));
    const int row = w.lib.MP3_List.count() - 1;
    const QString old = w.pathOf(row);

    PlaybackState play;
    FakeGraphs graphs;
    PlayerView view;
    {
        Player player(PlaybackContext{w.app, w.lib, play, w.ui, graphs, view});
        PlaylistCommands commands(player);
        commands.Add_To_PlayList("/elsewhere.mp3", -1);
        commands.Add_To_PlayList(old, row);
        ASSERT_TRUE(Rename_Track(w.ctx, row));
        EXPECT_EQ(play.Play_File, (QStringList{"/elsewhere.mp3", w.pathOf(row)}));
    }
    // Without a player the library has no playlist to keep.
    EXPECT_EQ(w.lib.Playlist_Paths, nullptr);
}
