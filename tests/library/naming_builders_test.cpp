// The builders of target names and folders under the default and edited rules.
#include <gtest/gtest.h>

#include <QDir>

#include "library/naming_builders.h"
#include "library_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(NamingBuilders, FileNamesFollowRowsSeparatorAndTrackRule)
{
    NamingRules r = NamingRules::defaults();
    auto name = [&](int list, int track, const QString& artist, const QString& album, const QString& title) {
        return Make_Track_Filename(r, list, track, artist, album, title, "Rock", "1999");
    };
    EXPECT_EQ(name(0, 4, "Some Artist", "Some Album", "Some Title"), "Some Artist - Some Album - 04 - Some Title.mp3");
    EXPECT_EQ(name(1, 4, "Some Artist", "Some Album", "Some Title"), "Some Album - 04 - Some Artist - Some Title.mp3");
    // Empty details keep their separators; trimmed and cleaned values.
    EXPECT_EQ(name(0, 4, "Some Artist", "", "Some Title"), "Some Artist -  - 04 - Some Title.mp3");
    EXPECT_EQ(name(0, 7, " Acme/Zenith ", "Why Now?", "?"), "Acme_Zenith - Why Now - 07 - .mp3");
    EXPECT_EQ(name(0, 0, "A", "B", "C"), "A - B - 00 - C.mp3");
    EXPECT_EQ(name(0, 112, "A", "B", "C"), "A - B - 12 - C.mp3");

    // Only Title: no separator at all.
    for (auto& row : r.fileLists[0])
        row.checked = row.name == "Title";
    EXPECT_EQ(name(0, 1, "A", "B", "Some Title"), "Some Title.mp3");

    // Every separator label; a row whose name matches no detail adds no value
    // but takes its separator; Genre and Year when checked.
    r.fileLists[0] = {{{"Artist", true}, {"Nonsense", true}, {"Year", true}, {"Genre", true}, {"Title", false},
                       {"Album", false}}};
    const QStringList expected{"A1999Rock.mp3", "A  1999 Rock.mp3", "A--1999-Rock.mp3", "A..1999.Rock.mp3",
                               "A__1999_Rock.mp3", "A -  - 1999 - Rock.mp3", "A .  . 1999 . Rock.mp3",
                               "A _  _ 1999 _ Rock.mp3"};
    for (int sep = 0; sep < 8; ++sep) {
        r.separators[0] = sep;
        EXPECT_EQ(name(0, 1, "A", "B", "C"), expected[sep]) << sep;
    }
}

TEST(NamingBuilders, TrackColumnsThatAreNoNumberGiveZero)
{
    for (const auto& [column, number] : std::vector<std::pair<QString, int>>{
             {"7", 7}, {" 12 ", 12}, {"", 0}, {"7/12", 0}, {"abc", 0}, {"40000", 0}, {"-3", -3}})
        EXPECT_EQ(Track_Number_Of(column), number) << column.toStdString();
}

TEST(NamingBuilders, FoldersAreCreatedLevelByLevel)
{
    TempEnv env;
    const QString lib = env.path("Lib/");
    QDir().mkpath(lib);
    NamingRules r = NamingRules::defaults();
    auto folder = [&](int list, const QString& artist, const QString& album) {
        return Make_Track_Folder(r, lib, list, artist, album, "Pop", "2001");
    };
    EXPECT_EQ(folder(2, "7 Sleepers", "Live"), lib + "0-9/7 Sleepers/Live");
    EXPECT_EQ(folder(2, "zenith", "X"), lib + "Z/zenith/X");  // the letter upper case, the name as tagged
    EXPECT_EQ(folder(2, "\u00c9mile", "X"), lib + "_#_/\u00c9mile/X");
    EXPECT_EQ(folder(2, ".44", "X"), lib + "_#_/.44/X");
    EXPECT_EQ(folder(2, "\u00dfa", "X"), lib + "_#_/\u00dfa/X");  // "ß" has no upper case of its own
    // Names that would stay in or leave their folder.
    EXPECT_EQ(folder(2, "..", ".."), lib + "_#_/__/__");
    EXPECT_EQ(folder(2, "Dot", "."), lib + "D/Dot/_");
    EXPECT_EQ(folder(2, "", "Lonely"), lib + "Lonely");  // no prefix level and no artist level
    EXPECT_EQ(folder(2, " AC/DC ", " Back? "), lib + "A/AC_DC/Back");
    EXPECT_EQ(folder(3, "Whoever", "Hits"), lib + "Various Artists/Hits");
    EXPECT_TRUE(QDir(lib + "0-9/7 Sleepers/Live").exists());
    EXPECT_TRUE(QDir(lib + "Various Artists/Hits").exists());

    r.prefix = false;
    r.folderLists[0][2].checked = true;  // Genre
    r.folderLists[0][3].checked = true;  // Year
    EXPECT_EQ(folder(2, "Zed", "Alb"), lib + "Zed/Alb/Pop/2001");
    for (auto& row : r.folderLists[0])
        row.checked = false;
    EXPECT_EQ(folder(2, "Zed", "Alb"), lib.chopped(1));  // no rows: the library folder itself
}

TEST(NamingBuilders, PreviewsShowTheRulesThemselves)
{
    NamingRules r = NamingRules::defaults();
    EXPECT_EQ(MakePreview(r, 0), "Artist - Album - Tracknumber - Title.mp3");
    EXPECT_EQ(MakePreview(r, 1), "Album - Tracknumber - Artist - Title.mp3");
    EXPECT_EQ(MakePreview(r, 2), "LIBRARY_FOLDER/A/Artist/Album/");
    EXPECT_EQ(MakePreview(r, 3), "LIBRARY_FOLDER/Various Artists/Album/");
    EXPECT_EQ(MakePreview(r, 4), "");
    r.prefix = false;
    r.separators[0] = 0;
    EXPECT_EQ(MakePreview(r, 2), "LIBRARY_FOLDER/Artist/Album/");
    EXPECT_EQ(MakePreview(r, 0), "ArtistAlbumTracknumberTitle.mp3");
}

TEST(NamingBuilders, MakeNewTrackReadsTheRowAndTheLibraryRules)
{
    LibraryFixture f;
    TrackRow row = makeTrack("Abba", "Waterloo", "/m", "x.mp3", "Gold");
    row[ColTrack] = "3";
    f.maker.track(row).key("ALBUM_COUNT", "1");
    ASSERT_TRUE(f.open());
    EXPECT_EQ(MakeNewTrack(f.ctx, 0, 0), "Abba - Gold - 03 - Waterloo.mp3");
    // Rules stored in the library file are what the builders see after opening.
    IniFile(f.files.vkt).write("DETAILS", "SEPARATOR_A", "4");
    IniFile(f.files.vkt).write("DETAILS", "DETAIL_A1_STATE", "False");
    Close_Library(f.ctx);
    ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
    EXPECT_EQ(MakeNewTrack(f.ctx, 0, 0), "Gold_03_Waterloo.mp3");
}

TEST(NamingBuilders, EditedRulesCountOnlyOnceAccepted)
{
    LibraryFixture f;
    ASSERT_TRUE(f.open());
    NamingState& n = f.lib.naming;
    n.working.separators[1] = 0;
    n.working.prefix = false;
    Cancel_Naming_Options(n);  // Cancel: back to the accepted rules
    EXPECT_TRUE(n.working == NamingRules::defaults());

    n.working.separators[1] = 0;
    n.working.prefix = false;
    n.working.folderLists[1][0].checked = false;
    Accept_Naming_Options(n, f.files.vkt);
    EXPECT_TRUE(n.tables == n.working);
    EXPECT_EQ(IniFile(f.files.vkt).read("DETAILS", "SEPARATOR_B", ""), "0");
    EXPECT_EQ(IniFile(f.files.vkt).read("DETAILS", "PREFIX", ""), "False");
    EXPECT_EQ(IniFile(f.files.vkt).read("DETAILS", "DETAIL_D1_STATE", ""), "False");
    EXPECT_EQ(MakePreview(n.working, 3), "LIBRARY_FOLDER/Album/");
}
