// The player's branches on a fake media graph: the copies, stepping, the end
// of a track by the position poll, skipping, library play, sliders.
#include <gtest/gtest.h>

#include "playback_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QStringList startedFiles(const RecordingView& v)
{
    QStringList out;
    for (const TrackStart& s : v.starts)
        out << s.file.section('/', -1);
    return out;
}

// The poll at the end of the running track.
void runToEnd(PlayerFixture& f)
{
    f.graph().position_ = f.graphs.script.duration;
    f.player.positionWork();
}

}  // namespace

TEST(Player, PlaysThroughWithAlternatingCopiesAndStopsAtTheEnd)
{
    PlayerFixture f;
    const QString a = f.mp3("a.mp3"), b = f.mp3("b.mp3"), c = f.mp3("c.mp3");
    f.entries({a, b, c});
    f.play.PlayList_Pos = 1;
    f.player.Play_Track();
    ASSERT_TRUE(f.play.Is_Playing);
    EXPECT_EQ(f.play.Now_Source, a);
    // The copy is the audio from the first frame on.
    const QByteArray copy = readFile(f.copy(1));
    EXPECT_EQ(static_cast<unsigned char>(copy[0]), 0xFF);
    EXPECT_TRUE(readFile(a).endsWith(copy));
    EXPECT_EQ(f.view.selectedRow, 0);

    // Next on the last entry without loop keeps playing; so does a poll
    // before the end.
    f.graph().position_ = 3;
    f.player.positionWork();
    EXPECT_EQ(f.view.events.filter("timer:").last(), "timer:00:03/");
    runToEnd(f);
    runToEnd(f);
    EXPECT_EQ(f.play.PlayList_Pos, 3);
    f.player.Next_Track();
    EXPECT_EQ(f.view.starts.size(), 3u);
    EXPECT_TRUE(f.play.Is_Playing);
    EXPECT_EQ(startedFiles(f.view), (QStringList{"Play01.mp3", "Play02.mp3", "Play01.mp3"}));
    EXPECT_EQ(f.graphs.script.live, 1);

    // At the natural end of the last entry the player stops there.
    runToEnd(f);
    EXPECT_FALSE(f.play.Is_Playing);
    EXPECT_EQ(f.play.PlayList_Pos, 3);
    EXPECT_EQ(f.view.ended, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(f.graphs.script.live, 0);
    EXPECT_EQ(f.view.covers.last(), "");  // the default picture after the end
}

TEST(Player, PreviousPauseLoopAndPlayOnARunningTrack)
{
    PlayerFixture f;
    const QString a = f.mp3("a.mp3"), b = f.mp3("b.mp3");
    f.entries({a, b});
    f.play.PlayList_Pos = 1;
    f.player.Play_Track();

    // Previous on the first entry without loop starts it over.
    f.player.Previous_Track();
    EXPECT_EQ(f.play.PlayList_Pos, 1);
    EXPECT_EQ(f.play.Now_Source, a);
    // With loop the last entry starts.
    f.player.setLoop(true);
    f.player.Previous_Track();
    EXPECT_EQ(f.play.Now_Source, b);
    // Next past the last with loop comes round to the first.
    f.player.Next_Track();
    EXPECT_EQ(f.play.Now_Source, a);

    // Pause holds; Play resumes the same graph.
    f.graph().position_ = 1;
    FakeGraph* g = &f.graph();
    f.player.Pause_Track();
    EXPECT_EQ(f.player.graphState(), GraphState::Paused);
    f.player.Play_Track();
    EXPECT_EQ(f.player.graphState(), GraphState::Running);
    EXPECT_EQ(&f.graph(), g);
    // Play on a running track forgets the copy: the next goes to Play01.
    EXPECT_EQ(f.play.Now_File, "");
    f.player.Next_Track();
    EXPECT_EQ(f.play.Now_File, f.copy(1));

    f.player.Stop_Track();
    EXPECT_FALSE(f.play.Is_Playing);
    EXPECT_EQ(f.play.Now_Artist, "");
    // Stop, Pause and Next work without a graph.
    f.player.Stop_Track();
    f.player.Pause_Track();
    EXPECT_FALSE(f.play.Is_Playing);
}

TEST(Player, BrokenEntriesAreSkippedWithoutAWord)
{
    PlayerFixture f;
    const QString a = f.mp3("a.mp3"), bad = f.broken("bad.mp3"), c = f.mp3("c.mp3");
    const QString gone = f.env.path("gone.mp3");
    f.entries({a, bad, gone, c});
    f.play.PlayList_Pos = 1;
    f.player.Play_Track();
    runToEnd(f);
    EXPECT_EQ(f.play.Now_Source, c);
    EXPECT_EQ(f.view.skipped, (std::vector<int>{2, 3}));
    EXPECT_TRUE(f.ui.messages.empty());

    // A file the graph cannot render is skipped too.
    PlayerFixture g;
    const QString x = g.mp3("x.mp3"), y = g.mp3("y.mp3");
    g.entries({x, y});
    g.graphs.script.failRenders = 1;
    g.play.PlayList_Pos = 1;
    g.player.Play_Track();
    EXPECT_EQ(g.play.Now_Source, y);
    EXPECT_EQ(g.play.Now_File, g.copy(1));
    EXPECT_FALSE(g.play.Auto_Next);

    // A looping list of nothing but broken files ends.
    PlayerFixture h;
    h.entries({h.broken("1.mp3"), h.broken("2.mp3"), h.broken("3.mp3")});
    h.player.setLoop(true);
    h.play.PlayList_Pos = 1;
    h.player.Play_Track();
    EXPECT_FALSE(h.play.Is_Playing);
    EXPECT_GE(h.view.skipped.size(), 3u);
}

TEST(Player, NonMp3EntriesPlayTheFileItselfAndKeepTheCover)
{
    PlayerFixture f;
    const QString a = f.mp3("a.mp3");
    const QString wav = f.env.path("sound.wav");
    writeFile(wav, QByteArray(100, 'w'));
    f.entries({a, wav});
    f.play.PlayList_Pos = 1;
    f.player.Play_Track();
    const int covers = f.view.covers.size();
    runToEnd(f);
    EXPECT_EQ(f.play.Now_File, wav);
    EXPECT_EQ(f.graphs.script.rendered.last(), wav);
    EXPECT_FALSE(QFile::exists(f.copy(2)));
    EXPECT_EQ(f.view.covers.size(), covers + 1);  // only the stop's default; no new cover
    EXPECT_FALSE(f.play.Has_Lyrics);
}

TEST(Player, LibraryPlayStepsOverBadRowsAndHandsOverToThePlaylist)
{
    PlayerFixture f;
    const QString l1 = f.mp3("lib/1.mp3"), l3 = f.mp3("lib/3.mp3");
    f.libraryRow(l1, "A", "B", "1", "one");
    f.libraryRow(f.env.path("lib/missing.mp3"), "A", "B", "2", "two");
    f.libraryRow(f.broken("lib/bad.mp3"), "A", "B", "3", "bad");
    f.libraryRow(l3, "A", "B", "4", "three");
    const QString p = f.mp3("p.mp3");
    f.entries({p});

    f.player.Play_Library_Track(1, l1);
    EXPECT_TRUE(f.play.Lib_Play);
    EXPECT_EQ(f.play.Now_File, f.copy(0));
    EXPECT_EQ(f.play.Now_Artist, "A");
    runToEnd(f);  // the playlist is not empty: the end steps through the library
    EXPECT_EQ(f.play.Lib_Pos, 4);
    EXPECT_EQ(f.play.Now_Source, l3);
    EXPECT_EQ(f.lib.MP3_List.selected(), 3);
    f.player.Next_Track();  // past the end: the playlist takes over
    EXPECT_FALSE(f.play.Lib_Play);
    EXPECT_EQ(f.play.Now_Source, p);
    EXPECT_TRUE(f.ui.messages.empty());

    // A library track without audio: its own message, then the playlist.
    f.player.Stop_Track();
    f.play.PlayList_Pos = 0;
    f.player.Play_Library_Track(3, f.env.path("lib/bad.mp3"));
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0].title, "Cannot play Library track");
    EXPECT_EQ(f.ui.messages[0].text, f.env.path("lib/bad.mp3"));
    EXPECT_FALSE(f.play.Lib_Play);
    EXPECT_EQ(f.play.Now_Source, p);

    // With an empty playlist library play stays at its end.
    PlayerFixture g;
    const QString only = g.mp3("only.mp3");
    g.libraryRow(only, "A", "B", "1", "one");
    g.player.Play_Library_Track(1, only);
    runToEnd(g);
    EXPECT_TRUE(g.play.Is_Playing);
    EXPECT_TRUE(g.play.Lib_Play);
}

TEST(Player, RandomModeDoubleClickAndDeletionOfTheRunningTrack)
{
    PlayerFixture f;
    f.play.Random = draws({0.1});
    const QString a = f.mp3("a.mp3"), b = f.mp3("b.mp3"), c = f.mp3("c.mp3");
    f.entries({a, b, c});  // order 3 2 1
    ASSERT_EQ(f.play.Random_Order, (std::vector<int>{3, 2, 1}));
    f.player.setRandom(true);
    f.player.playListDoubleClick(0);  // the row of a
    EXPECT_EQ(f.play.PlayList_Pos, 3);
    EXPECT_EQ(f.play.Now_Source, a);
    // Off and on again: the same track stays current.
    f.player.setRandom(false);
    EXPECT_EQ(f.play.PlayList_Pos, 1);
    f.player.setRandom(true);
    EXPECT_EQ(f.play.PlayList_Pos, 3);
    // Random play walks the permutation; at its end without loop it stops.
    f.player.Previous_Track();
    EXPECT_EQ(f.play.Now_Source, b);

    // Deleting the running track of two entries starts the other one.
    PlayerFixture g;
    const QString x = g.mp3("x.mp3"), y = g.mp3("y.mp3");
    g.entries({x, y});
    g.play.PlayList_Pos = 1;
    g.player.Play_Track();
    g.cmds.Playlist_Track_Delete(1);
    EXPECT_EQ(g.play.PlayList_Count, 1);
    EXPECT_EQ(g.play.PlayList_Pos, 1);
    EXPECT_EQ(g.play.Now_Source, y);
    EXPECT_EQ(g.play.Play_List.count(), 1);
    EXPECT_TRUE(g.play.Is_Playing);
}

TEST(Player, SlidersMuteAndTheTimerWork)
{
    PlayerFixture f;
    f.entries({f.mp3("a.mp3")});
    f.play.PlayList_Pos = 1;
    f.player.Play_Track();
    EXPECT_EQ(f.graphs.script.volumes.back(), -1400);  // the default 80

    f.player.volumeSliderChanged(0);
    EXPECT_EQ(f.graphs.script.volumes.back(), -7000);
    f.player.volumeSliderChanged(100);
    EXPECT_EQ(f.graphs.script.volumes.back(), 0);
    f.player.muteClicked();
    EXPECT_EQ(f.graphs.script.volumes.back(), -7000);
    f.player.volumeSliderChanged(50);  // muted: no volume call
    EXPECT_EQ(f.graphs.script.volumes.back(), -7000);
    f.player.muteClicked();
    EXPECT_EQ(f.graphs.script.volumes.back(), -3500);

    // The cover window's slider mirrors the main one and back, once.
    f.play.Cover_Window_Open = true;
    f.view.events.clear();
    f.player.volumeSliderChanged(30);
    f.player.coverVolumeSliderChanged(40);
    EXPECT_EQ(f.view.events, (QStringList{"volume:30 30%", "cover-volume:30 30%", "volume:40 40%", "cover-volume:40 40%"}));
    f.play.Volume_Lock_Main = true;  // a call that comes back from the mirror is dropped
    f.player.coverVolumeSliderChanged(10);
    EXPECT_EQ(f.play.Volume_Slider_Value, 40);
    f.play.Volume_Lock_Main = false;

    f.player.balanceSliderChanged(-50);
    EXPECT_EQ(f.graphs.script.balances.back(), -10000);

    // The time slider seeks on a click and while dragged, not when the
    // position work writes it.
    f.player.timeSliderValueChanged(20);
    EXPECT_TRUE(f.graphs.script.seeks.empty());
    f.player.timeSliderClick(5);
    f.player.timeSliderMouseDown();
    f.player.timeSliderValueChanged(7);
    f.player.timeSliderMouseUp();
    f.player.timeSliderValueChanged(9);
    EXPECT_EQ(f.graphs.script.seeks, (std::vector<double>{5, 7}));

    // The marquee rotates the display name; the colours walk the cube's edge
    // and come back after six edges of 64 steps.
    f.view.events.clear();
    f.player.marquee();
    EXPECT_EQ(f.view.events, QStringList{"song:" + QString(20, ' ') + "a"});
    const Rgb start = f.play.Cycle_Colour;
    for (int i = 0; i < 6 * 64; ++i)
        f.player.colourCycle();
    EXPECT_EQ(f.play.Cycle_Colour, start);
    f.player.colourCycle();
    EXPECT_EQ(f.play.Cycle_Colour, (Rgb{255, 4, 0}));
}
