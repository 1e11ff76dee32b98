// The menu commands that fill the playlist from the library list, their
// messages, and the wav/wma entries with their input boxes.
#include <gtest/gtest.h>

#include <QDir>

#include "playback_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
QStringList titlesOf(const PlaybackState& s)
{
    QStringList out;
    for (int i = 0; i < s.Play_List.count(); ++i)
        out << s.Play_List.field(i, PlayTitle);
    return out;
}
}  // namespace

TEST(PlaylistCommands, SingleTrackCommandsSpeakSelectionsSkipInSilence)
{
    PlayerFixture f;
    const int good = f.libraryRow(f.mp3("l/good.mp3"), "A", "Al", "1", "Good");
    const int missing = f.libraryRow(f.env.path("l/missing.mp3"), "A", "Al", "2", "Missing");
    const int bad = f.libraryRow(f.broken("l/bad.mp3"), "A", "Al", "3", "Bad");
    const int other = f.libraryRow(f.mp3("l/other.mp3"), "B", "Al", "4", "Other");

    f.cmds.mnu_Track_Add();  // nothing selected
    EXPECT_EQ(f.play.PlayList_Count, 0);
    f.lib.MP3_List.select(missing);
    f.cmds.mnu_Track_Add();
    f.lib.MP3_List.select(bad);
    f.cmds.mnu_Track_Add();
    ASSERT_EQ(f.ui.messages.size(), 2u);
    EXPECT_EQ(f.ui.messages[0].title, "File not found");
    EXPECT_EQ(f.ui.messages[0].text, f.env.path("l/missing.mp3"));
    EXPECT_EQ(f.ui.messages[1].title, "Not Mpeg 1/Layer 3");

    // The first entry starts playing; the next one only joins.
    f.lib.MP3_List.select(good);
    f.cmds.mnu_Track_Add();
    EXPECT_EQ(f.view.starts.size(), 1u);
    f.lib.MP3_List.select(other);
    f.cmds.libraryDoubleClick();
    EXPECT_EQ(titlesOf(f.play), (QStringList{"Good", "Other"}));
    EXPECT_EQ(f.view.starts.size(), 1u);
    EXPECT_TRUE(f.app.Menu_Refresh_Wanted);

    // A selection: bad rows are passed over without a word.
    f.lib.MP3_List.setSelection({good, missing, bad, other}, good);
    f.cmds.mnu_Selection_Play();
    EXPECT_EQ(titlesOf(f.play), (QStringList{"Good", "Other"}));
    EXPECT_EQ(f.play.PlayList_Count, 2);
    EXPECT_EQ(f.ui.messages.size(), 2u);
    EXPECT_EQ(f.play.Now_Source, f.env.path("l/good.mp3"));

    // Track play replaces the list with the selected row.
    f.lib.MP3_List.select(other);
    f.cmds.mnu_Track_Play();
    EXPECT_EQ(titlesOf(f.play), QStringList{"Other"});
    EXPECT_EQ(f.play.Now_Source, f.env.path("l/other.mp3"));

    // Artist: every row of the artist, the good ones.
    f.lib.MP3_List.select(good);
    f.cmds.mnu_Artist_Add();
    EXPECT_EQ(titlesOf(f.play), (QStringList{"Other", "Good"}));
    f.cmds.mnu_All_Play();
    EXPECT_EQ(titlesOf(f.play), (QStringList{"Good", "Other"}));
    f.cmds.mnu_PlayList_Clear();
    EXPECT_EQ(f.play.PlayList_Count, 0);
    EXPECT_FALSE(f.play.Is_Playing);

    // A hidden list ignores the double click.
    f.lib.MP3_List.setHidden(true);
    f.cmds.libraryDoubleClick();
    EXPECT_EQ(f.play.PlayList_Count, 0);
}

TEST(PlaylistCommands, AlbumsAndArtistsNeedTheirNames)
{
    PlayerFixture f;
    f.libraryRow(f.mp3("l/3.mp3"), "A", "Al", "3", "Three");
    f.libraryRow(f.mp3("l/1.mp3"), "A", "Al", "1", "One");
    const int va = f.libraryRow(f.mp3("l/2.mp3"), "Z", "Al", "2", "Two", "Yes");
    const int noArtist = f.libraryRow(f.mp3("l/x.mp3"), "", "Al", "2", "X");

    f.lib.MP3_List.select(0);
    f.cmds.mnu_Album_Play();
    EXPECT_EQ(titlesOf(f.play), (QStringList{"One", "Three"}));
    EXPECT_EQ(f.play.Now_Source, f.env.path("l/1.mp3"));
    f.lib.MP3_List.select(va);
    f.cmds.mnu_Album_Add();  // a compilation of one
    EXPECT_EQ(titlesOf(f.play), (QStringList{"One", "Three", "Two"}));

    f.lib.MP3_List.select(noArtist);
    f.cmds.mnu_Album_Add();
    f.cmds.mnu_Artist_Play();
    ASSERT_EQ(f.ui.messages.size(), 2u);
    EXPECT_EQ(f.ui.messages[0].text, "No Artist/Album known for this Track");
    EXPECT_EQ(f.ui.messages[0].title, "Unknown Artist/Album");
    EXPECT_EQ(f.ui.messages[1].text, "No Artist known for this Track");
    EXPECT_EQ(f.ui.messages[1].title, "Unknown Artist");
    EXPECT_EQ(f.play.PlayList_Count, 3);
}

TEST(PlaylistCommands, WavAndWmaEntriesAskForTheirColumns)
{
    PlayerFixture f;
    const QString wav = f.env.path("in/take.wav");
    writeFile(wav, QByteArray(64, 'w'));
    f.app.settings.SaveSetting("Convert", "SourceFolder", f.env.path("in"));
    f.ui.dialogResults = {wav};
    f.ui.inputs = {"Band", "Record"};
    f.graphs.script.duration = 125.4;
    f.cmds.mnu_Wav_Add();
    ASSERT_EQ(f.ui.fileDialogs.size(), 1u);
    const FileDialogRequest& d = f.ui.fileDialogs[0];
    EXPECT_EQ(QStringList({d.title, d.filterDescription, d.startFolder}),
              QStringList({"Open WAV Audio Track", "WAV Files (*.wav)", f.env.path("in")}));
    ASSERT_EQ(f.play.PlayList_Count, 1);
    EXPECT_EQ(f.ui.inputPrompts,
              (QStringList{"Please provide the artist name of this track take.wav|Unknown Artist|Unknown Artist",
                           "Please provide the album name of this track take.wav|Unknown Album|Unknown Album",
                           "Please provide the title of this track take.wav|Unknown Title|Unknown Title"}));
    EXPECT_EQ(f.play.Play_List.row(0), (PlayRow{"Band", "Record", "Unknown Title", "02:05"}));
    EXPECT_EQ(f.play.Now_File, wav);  // the first entry plays, without a copy

    // The name must end in lower-case "wma" for the WMA command; a graph
    // that cannot read the file leaves the time empty.
    const QString upper = f.env.path("in/x.WMA");
    writeFile(upper, "x");
    f.ui.dialogResults = {upper};
    f.cmds.mnu_Wma_Add();
    EXPECT_EQ(f.play.PlayList_Count, 1);
    f.graphs.script.failRenders = 1;
    f.cmds.Add_Non_MP3_To_PlayList(f.env.path("in/y.wma"), "y.wma");
    EXPECT_EQ(f.play.Play_List.row(1)[PlayTime], "");
    EXPECT_EQ(f.ui.fileDialogs[1].title, "Open WMA Audio Track");
}
