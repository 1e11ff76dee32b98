// The tag editing verbs of sonorit-cli (panels, edit, album-tag,
// filename-words, filename-tag, quick-retag, tag-selection): their arguments,
// typed answers, printed output and exit codes. What they write into the
// files the tag editing tests show.
#include <gtest/gtest.h>

#include "cli_run.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

// Two tracks of one album, one without an album, one named but untagged.
struct TagLibrary {
    TempEnv env;
    QString folder = env.path("Main"), vkt = env.path("Fav.vkt");  // Main: the maker's Main Folder
    TagLibrary()
    {
        LibraryMaker maker(env.paths(), vkt);
        for (const char* n : {"1", "2"}) {
            const QString file = QStringLiteral("%1.mp3").arg(n);
            writeTaggedMp3(folder + "/" + file, {"Abba", "Gold", n, "Song", "1999", "Pop"}, {0.5});
            sonorit::TrackRow row = makeTrack("Abba", "Song", folder, file, "Gold");
            row[sonorit::ColTrack] = n;
            maker.track(row);
        }
        writeTaggedMp3(folder + "/lone.mp3", {}, {0.5});
        maker.track(makeTrack("", "Lone", folder, "lone.mp3", "")).write();
    }
};

QJsonObject panelsOf(const CliRun& r)
{
    return r.out.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(r.out[0].toUtf8()).object();
}

QJsonValue field(const QJsonObject& panels, const char* panel, const char* key)
{
    return panels[QLatin1String(panel)].toObject()[QLatin1String(key)];
}

}  // namespace

TEST(CliTagEdit, UsageErrorsNameTheirReason)
{
    TagLibrary lib;
    const QString vkt = lib.vkt;
    expectUsageErrors({
        {{"filename-words"}, "usage"},
        {{"panels", vkt}, "one ROW"},
        {{"panels", vkt, "4"}, "row 4"},
        {{"edit", vkt, "1", "--v2", "title=x"}, "--write"},
        {{"edit", vkt, "1", "--v1", "va=yes", "--write", "v1"}, "--v1 knows"},
        {{"edit", vkt, "1", "--v2", "genre=150", "--write", "v2"}, "0 to 149"},
        {{"edit", vkt, "1", "--copy", "sideways", "--write", "v2"}, "--copy"},
        {{"edit", vkt, "1", "--cover", lib.env.path("none.jpg"), "--write", "v2"}, "--cover"},
        {{"edit", vkt, "1", "--v2", "genre=17", "--v2", "genre_text=x", "--write", "v2"}, "User Defined"},
        {{"album-tag", vkt}, "at least one ROW"},
        {{"album-tag", vkt, "1", "--va", "yes"}, "--va is on or off"},
        {{"album-tag", vkt, "1", "--genre", "17:Rock"}, "149"},
        {{"album-tag", vkt, "1", "--track-artist", "1=X"}, "--va on"},
        {{"album-tag", vkt, "1", "--title", "3=X"}, "the album has 2 tracks"},
        {{"album-tag", vkt, "1", "--cover", "track:9"}, "no track of the album"},
        {{"album-tag", vkt, "1", "--cover", vkt}, "--cover takes"},
        {{"album-tag", vkt, "1", "--artist", "A", "--artist", "B"}, "twice"},
        {{"album-tag", vkt, "4"}, "row 4"},
        {{"filename-tag", vkt, "3", "--artist", "A", "--album", "B"}, "--title is required"},
        {{"filename-tag", vkt, "--artist", "A", "--album", "B", "--title", "C"}, "one ROW"},
        {{"filename-tag", vkt, "3", "--artist", "A", "--album", "B", "--title", "C", "--mode", "v3"}, "--mode"},
        {{"filename-tag", vkt, "3", "--artist", "A", "--album", "B", "--title", "C", "--genre", "17:Rock"}, "149"},
        {{"filename-tag", vkt, "4", "--artist", "A", "--album", "B", "--title", "C"}, "row 4"},
        {{"tag-selection", vkt, "cover", "none.jpg", "1"}, "file not found"},
        {{"tag-selection", vkt, "genre", "Rock", "1"}, "a genre is three digits of its index, then its text: Rock"},
        {{"tag-selection", vkt, "artist", "X"}, "usage"},
        {{"quick-retag", vkt, "sideways"}, "the scope is track, selection, album, all, folder or tree: sideways"},
    });
}

TEST(CliTagEdit, PanelsAndEditPrintThePanelsThenTheRow)
{
    TagLibrary lib;
    const CliRun shown = runCli({"panels", lib.vkt, "1"});
    ASSERT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    ASSERT_EQ(shown.out.size(), 4);  // the panels, then the list
    const QJsonObject p = panelsOf(shown);
    EXPECT_EQ(p["tag1"].toObject().keys(), QStringList({"album", "artist", "comment", "genre", "title", "track", "year"}));
    EXPECT_EQ(p["tag2"].toObject().keys(), QStringList({"album", "artist", "comment", "cover", "genre", "genre_text",
                                                        "time", "title", "track", "va", "year"}));
    EXPECT_EQ(p["mpeg"].toObject().size(), 9);
    EXPECT_TRUE(field(p, "tag2", "genre").isDouble() && field(p, "tag2", "va").isBool());

    const CliRun edited = runCli({"edit", lib.vkt, "1", "--v2", "title=New", "--v2", "track=x9", "--v2", "genre=149",
                                  "--v2", "genre_text=Mine", "--v2", "va=on", "--copy", "v2-to-v1", "--write", "both"});
    ASSERT_EQ(edited.exitCode, 0) << edited.err.toStdString();
    EXPECT_EQ(field(panelsOf(edited), "tag1", "title").toString(), QString("New").leftJustified(30));
    ASSERT_EQ(edited.out.size(), 4);
    EXPECT_EQ(edited.out[1].section('\t', 0, 3) + '|' + edited.out[1].section('\t', 5, 7), "Abba\tGold\t09\tNew|1999\tMine\tYes");

    // A .jpg that is no picture: told, status 1, nothing written.
    writeFile(lib.env.path("fake.jpg"), "text");
    const CliRun refused = runCli({"edit", lib.vkt, "1", "--v2", "title=Other", "--cover", lib.env.path("fake.jpg"),
                                   "--write", "v2"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(titlesOf(refused), QStringList{"Cover"});
    EXPECT_EQ(field(panelsOf(runCli({"panels", lib.vkt, "1"})), "tag2", "title").toString(), "New");
}

TEST(CliTagEdit, AlbumAndFilenameVerbsPrintTheList)
{
    TagLibrary lib;
    writeFile(lib.env.path("front.jpg"), QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(64, 'j'));
    const CliRun album = runCli({"album-tag", lib.vkt, "1", "--year", "19x93", "--genre", "149:Schlager", "--va", "on",
                                 "--track-artist", "2=Agnetha", "--title", "1=Waterloo", "--cover",
                                 lib.env.path("front.jpg")});
    ASSERT_EQ(album.exitCode, 0) << album.err.toStdString();
    ASSERT_EQ(album.out.size(), 3);
    EXPECT_EQ(album.out[0].section('\t', 0, 7), "Abba\tGold\t01\tWaterloo\t03:25\t1993\tSchlager\tYes");
    EXPECT_EQ(album.out[1].section('\t', 0, 7), "Agnetha\tGold\t02\tSong\t03:25\t1993\tSchlager\tYes");
    // A track without album is told, not a usage error.
    const CliRun unknown = runCli({"album-tag", lib.vkt, "3"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(titlesOf(unknown), QStringList({"Unknown Artist/Album"}));
    EXPECT_TRUE(unknown.out.isEmpty());

    const CliRun words = runCli({"filename-words", "Abba_-_Gold%20Hits.mp3"});
    EXPECT_EQ(words.exitCode, 0);
    EXPECT_EQ(words.out, QStringList({"Abba", "Abba Gold", "Abba Gold Hits", "Gold", "Gold Hits", "Hits"}));

    const CliRun named = runCli({"filename-tag", lib.vkt, "3", "--artist", "Cher", "--album", "Hits", "--title",
                                 "Believe", "--track", "7x", "--genre", "149:Pop", "--va", "--mode", "v2"});
    ASSERT_EQ(named.exitCode, 0) << named.err.toStdString();
    ASSERT_EQ(named.out.size(), 3);
    EXPECT_EQ(named.out[2].split('\t').mid(0, 8), QStringList({"Cher", "Hits", "07", "Believe", "00:01", "", "Pop", "Yes"}));
}

TEST(CliTagEdit, BatchVerbsTakeTypedAnswersInOrder)
{
    TagLibrary lib;
    const QString vkt = lib.vkt;
    struct Case {
        const char* name;
        QStringList args;
        QStringList titles;
        QString year1;  // the Year column of row 1 afterwards
    } cases[] = {
        {"retag all", {"quick-retag", vkt, "all"}, {}, "1999"},
        {"retag tree", {"quick-retag", vkt, "tree", lib.folder}, {"Refresh Report"}, "1999"},
        {"year refused, then an empty answer", {"--answers", ",,", "tag-selection", vkt, "year", "19a9", "1", "2"},
         {"Tag Year", "Tag Year"}, "1999"},
        {"year asked again", {"--answers", "99,2001", "tag-selection", vkt, "year", "19a9", "2", "1"},
         {"Tag Year", "Tag Year", "Tag Year"}, "2001"},
        {"genre as frmGenre answers", {"tag-selection", vkt, "genre", "017Rock", "1"}, {}, "2001"},
        {"genre cancelled", {"tag-selection", vkt, "genre", "Cancel", "1"}, {}, "2001"},
        {"va on needs no value", {"tag-selection", vkt, "va-on", "1"}, {}, "2001"},
    };
    for (const Case& c : cases) {
        const CliRun r = runCli(c.args, lib.env.root());
        EXPECT_EQ(r.exitCode, 0) << c.name << r.err.toStdString();
        EXPECT_EQ(titlesOf(r), c.titles) << c.name;
        ASSERT_EQ(r.out.size(), 3) << c.name;
        EXPECT_EQ(r.out[0].section('\t', 5, 5), c.year1) << c.name;
    }
    // The typed answers in the order asked, each as one line; an empty item is an empty answer.
    const CliRun r = runCli({"--answers", "2x,", "tag-selection", vkt, "year", "1", "1"});
    EXPECT_EQ(r.err.count("\"input\":"), 3) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("\"input\":\"2x\"")) << r.err.toStdString();
}
