// quick-retag and tag-selection of sonorit-cli: their arguments, the typed
// answers (an empty item is an empty answer), output and exit codes. What
// the commands do to files is the core tests' matter.
#include <gtest/gtest.h>

#include "cli_run.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

using namespace sonorit::test;

namespace {

struct TwoTrackLibrary {
    TempEnv env;
    QString vkt = env.path("Lib.vkt");
    TwoTrackLibrary()
    {
        for (const char* n : {"1", "2"})
            writeTaggedMp3(env.path("Music/A/B/") + n + ".mp3", {"Art", "Alb", n, QString("T") + n, {}, {}, false},
                           {0.5});
        runCli({"--dialog", env.path("Music"), "new", vkt});
    }
};

}  // namespace

TEST(CliTagBatch, ArgumentsAnswersAndExitCodes)
{
    TwoTrackLibrary lib;
    const QString vkt = lib.vkt;
    struct Case {
        const char* name;
        QStringList args;
        int exitCode;
        QStringList titles;
        QString year1;  // the Year column of row 1 afterwards; "-" for no rows printed
    } cases[] = {
        {"retag all", {"quick-retag", vkt, "all"}, 0, {}, ""},
        {"retag tree", {"quick-retag", vkt, "tree", lib.env.path("Music")}, 0, {"Refresh Report"}, ""},
        {"year refused, then an empty answer",
         {"--answers", ",,", "tag-selection", vkt, "year", "19a9", "1", "2"}, 0, {"Tag Year", "Tag Year"}, ""},
        {"year asked again",
         {"--answers", "99,1999", "tag-selection", vkt, "year", "19a9", "2", "1"}, 0,
         {"Tag Year", "Tag Year", "Tag Year"}, "1999"},
        {"genre as frmGenre answers", {"tag-selection", vkt, "genre", "017Rock", "1"}, 0, {}, "1999"},
        {"genre cancelled", {"tag-selection", vkt, "genre", "Cancel", "1"}, 0, {}, "1999"},
        {"va on needs no value", {"tag-selection", vkt, "va-on", "1"}, 0, {}, "1999"},
        {"a missing cover", {"tag-selection", vkt, "cover", "none.jpg", "1"}, 2, {"error: file not found: "
                                                                                   + lib.env.root() + "/none.jpg"}, "-"},
        {"a genre without its index", {"tag-selection", vkt, "genre", "Rock", "1"}, 2,
         {"error: a genre is three digits of its index, then its text: Rock"}, "-"},
        {"no rows", {"tag-selection", vkt, "artist", "X"}, 2, {}, "-"},
        {"an unknown scope", {"quick-retag", vkt, "sideways"}, 2,
         {"error: the scope is track, selection, album, all, folder or tree: sideways"}, "-"},
    };
    for (const Case& c : cases) {
        const CliRun r = runCli(c.args, lib.env.root());
        EXPECT_EQ(r.exitCode, c.exitCode) << c.name << r.err.toStdString();
        EXPECT_EQ(titlesOf(r), c.titles) << c.name;
        if (c.year1 == "-") {
            EXPECT_TRUE(r.out.isEmpty()) << c.name;
            continue;
        }
        ASSERT_EQ(r.out.size(), 2) << c.name;
        EXPECT_EQ(r.out[0].section('\t', 5, 5), c.year1) << c.name;
    }
    // The typed answers in the order asked, each as one line.
    const CliRun r = runCli({"--answers", "2x,", "tag-selection", vkt, "year", "1", "1"});
    EXPECT_EQ(r.err.count("\"input\":"), 3) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("\"input\":\"2x\"")) << r.err.toStdString();
}
