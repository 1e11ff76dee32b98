// "sonorit-cli open" run as a separate program in a private home: rows on
// standard output, each message box as a JSON line on standard error.
#include <gtest/gtest.h>

#include "cli_run.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(CliOpen, PrintsTheRowsInListOrder)
{
    TempEnv env;
    const LibraryFiles f = LibraryMaker(env.paths(), env.path("Music.vkt"))
                               .track(makeTrack("Zappa", "Peaches", "/m/z", "1.mp3")).freeSlot()
                               .track(makeTrack("Bj\u00f6rk", "Joga", "/m/b", "2.mp3")).write();
    const CliRun r = runCli({"open", f.vkt});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, (QStringList{"Bj\u00f6rk\tAlbum\t01\tJoga\t03:25\t1999\tPop\tNo\t/m/b\t2.mp3\tTRACK 3\t"
                                  "2024-05-01 12:00:00\t4096",
                                  "Zappa\tAlbum\t01\tPeaches\t03:25\t1999\tPop\tNo\t/m/z\t1.mp3\tTRACK 1\t"
                                  "2024-05-01 12:00:00\t4096"}));
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    // The child kept its settings in the private home.
    EXPECT_TRUE(readFile(env.path(".config/ZEVSonorit/ZEVSonorit.ini")).contains("Last_Used_Lib=" + f.vkt.toUtf8()));
}

TEST(CliOpen, AnswersTheQuestionsInOrder)
{
    TempEnv env;
    LibraryMaker maker(env.paths(), env.path("Music.vkt"));
    for (int i = 1; i <= 3; ++i)  // a.mp3, b.mp3, c.mp3, each with a 14th field
        maker.text(QString("A|B|01|T|03:00|1999|Pop|No|/m|%1.mp3|TRACK %2|2024|1|x").arg(QChar('a' + i - 1)).arg(i)
                       .toUtf8());
    const QString vkt = maker.write().vkt;
    const struct {
        QStringList options, answers, files;
    } rows[] = {
        {{"--answers", "yes,no"}, {"yes", "no", "no"}, {"a.mp3"}},
        {{"--answers=no,yes", "--answer", "yes"}, {"no", "yes", "yes"}, {"b.mp3", "c.mp3"}},
        {{}, {"no", "no", "no"}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options.join(' ').toStdString());
        const CliRun r = runCli(row.options + QStringList{"open", vkt});
        EXPECT_EQ(r.exitCode, 0);
        QStringList answers, files;
        for (const QJsonObject& o : r.json) {
            EXPECT_EQ(o["title"].toString(), "Invalid MP3 Items");
            EXPECT_EQ(o["buttons"].toString(), "yes_no");
            EXPECT_TRUE(o["text"].toString().endsWith("Unknown Item 1: x\r\n\rDo you accept the known items?"));
            answers << o["answer"].toString();
        }
        for (const QString& line : r.out)
            files << line.section('\t', 9, 9);
        EXPECT_EQ(answers, row.answers);
        EXPECT_EQ(files, row.files);
    }
}

TEST(CliOpen, FailuresAndUsage)
{
    TempEnv env;
    const QString vkt = LibraryMaker(env.paths(), env.path("Broken.vkt")).key("ALBUMLIB_NAME", env.path("none.tri"))
                            .write().vkt;
    const CliRun failed = runCli({"open", vkt});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(failed.out.isEmpty());
    ASSERT_EQ(failed.json.size(), 1u) << failed.err.toStdString();
    EXPECT_EQ(failed.json[0]["title"].toString() + " " + failed.json[0]["buttons"].toString() + " "
                  + failed.json[0]["answer"].toString(),
              "Open Library Failure ok ok");

    writeFile(env.path("notes.txt"), "x");
    const CliRun notLibrary = runCli({"open", env.path("notes.txt")});
    EXPECT_EQ(notLibrary.exitCode, 1);
    ASSERT_EQ(notLibrary.json.size(), 1u);
    EXPECT_TRUE(notLibrary.json[0].contains("error"));

    const char* usage = "usage: sonorit-cli";
    expectUsageErrors({{{}, usage}, {{"open"}, usage}, {{"open", vkt, vkt}, usage}, {{"frobnicate", vkt}, usage},
                       {{"open", vkt, "--answers"}, usage}});
}
