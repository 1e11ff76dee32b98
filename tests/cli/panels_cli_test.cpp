// sonorit-cli panels and edit: arguments, the JSON of the panels and exit codes.
#include <gtest/gtest.h>

#include <QJsonArray>

#include "cli_run.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

QJsonObject panelsOf(const CliRun& r)
{
    return r.out.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(r.out[0].toUtf8()).object();
}

QJsonValue field(const QJsonObject& panels, const char* panel, const char* key)
{
    return panels[QLatin1String(panel)].toObject()[QLatin1String(key)];
}

}  // namespace

TEST(CliPanels, PanelsAndEditPrintWhatTheUserSees)
{
    TempEnv env;
    const QString folder = env.path("Music");
    ASSERT_TRUE(writeTaggedMp3(folder + "/a.mp3", {"Art", "Alb", "3", "Song", "1999", "Pop", false}));
    const QString vkt = env.path("Fav.vkt");
    LibraryMaker(env.paths(), vkt).track(makeTrack("Art", "Song", folder, "a.mp3")).write();

    const CliRun shown = runCli({"panels", vkt, "1"});
    ASSERT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    ASSERT_EQ(shown.out.size(), 2);  // the panels, then the list's row
    const QJsonObject p = panelsOf(shown);
    EXPECT_EQ(p.keys(), QStringList({"mpeg", "tag1", "tag2"}));
    EXPECT_EQ(p["tag1"].toObject().keys(),
              QStringList({"album", "artist", "comment", "genre", "title", "track", "year"}));
    EXPECT_EQ(p["tag2"].toObject().keys(), QStringList({"album", "artist", "comment", "cover", "genre", "genre_text",
                                                        "time", "title", "track", "va", "year"}));
    EXPECT_EQ(p["mpeg"].toObject().size(), 9);
    EXPECT_EQ(field(p, "tag2", "genre_text").toString(), "Pop");
    EXPECT_TRUE(field(p, "tag2", "genre").isDouble());
    EXPECT_TRUE(field(p, "tag2", "va").isBool());

    const CliRun edited = runCli({"edit", vkt, "1", "--v2", "title=New", "--v2", "track=x9", "--v2", "genre=149",
                                  "--v2", "genre_text=Mine", "--v2", "va=on", "--copy", "v2-to-v1", "--write", "both"});
    ASSERT_EQ(edited.exitCode, 0) << edited.err.toStdString();
    const QJsonObject e = panelsOf(edited);
    EXPECT_EQ(field(e, "tag2", "title").toString(), "New");
    EXPECT_EQ(field(e, "tag2", "track").toString(), "09");
    EXPECT_EQ(field(e, "tag2", "va").toBool(), true);
    EXPECT_EQ(field(e, "tag1", "title").toString(), QString("New").leftJustified(30));  // as the box shows the file's tag
    ASSERT_EQ(edited.out.size(), 2);
    EXPECT_EQ(edited.out[1].split('\t').mid(0, 8), QStringList({"Art", "Alb", "09", "New", "00:01", "1999", "Mine", "Yes"}));

    // A .jpg that is no picture: told, and nothing written.
    QFile fake(env.path("fake.jpg"));
    ASSERT_TRUE(fake.open(QIODevice::WriteOnly));
    fake.write("text");
    fake.close();
    const CliRun refused = runCli({"edit", vkt, "1", "--v2", "title=Other", "--cover", fake.fileName(), "--write", "v2"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(titlesOf(refused), QStringList{"Cover"});
    EXPECT_EQ(field(panelsOf(runCli({"panels", vkt, "1"})), "tag2", "title").toString(), "New");

    const std::pair<QStringList, const char*> usage[] = {
        {{"panels", vkt}, "one ROW"},
        {{"panels", vkt, "2"}, "row 2"},
        {{"edit", vkt, "1", "--v2", "title=x"}, "--write"},
        {{"edit", vkt, "1", "--v1", "va=yes", "--write", "v1"}, "--v1 knows"},
        {{"edit", vkt, "1", "--v2", "genre=150", "--write", "v2"}, "0 to 149"},
        {{"edit", vkt, "1", "--copy", "sideways", "--write", "v2"}, "--copy"},
        {{"edit", vkt, "1", "--cover", env.path("none.jpg"), "--write", "v2"}, "--cover"},
        {{"edit", vkt, "1", "--v2", "genre=17", "--v2", "genre_text=x", "--write", "v2"}, "User Defined"},
    };
    for (const auto& [args, reason] : usage) {
        const CliRun bad = runCli(args);
        EXPECT_EQ(bad.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(bad.err.contains(reason)) << bad.err.toStdString();
    }
}
