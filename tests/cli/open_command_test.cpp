// "sonorit-cli open" run as a separate program in a private home: rows on
// standard output, each message box as a JSON line on standard error.
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

struct CliRun {
    int exitCode = -1;
    QStringList out;                // lines of standard output
    std::vector<QJsonObject> json;  // JSON lines of standard error
    QString err;
};

CliRun cli(const TempEnv& env, const QStringList& args)
{
    QProcess p;
    QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
    e.insert(QStringLiteral("HOME"), env.root());
    e.insert(QStringLiteral("XDG_DATA_HOME"), env.path(QStringLiteral(".local/share")));
    e.insert(QStringLiteral("XDG_CONFIG_HOME"), env.path(QStringLiteral(".config")));
    e.insert(QStringLiteral("XDG_RUNTIME_DIR"), env.path(QStringLiteral("run")));
    p.setProcessEnvironment(e);
    p.start(QStringLiteral(SONORIT_CLI_PATH), args);
    CliRun r;
    if (!p.waitForFinished(30000))
        return r;
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    r.err = QString::fromUtf8(p.readAllStandardError());
    for (const QString& line : r.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QJsonDocument d = QJsonDocument::fromJson(line.toUtf8());
        if (d.isObject())
            r.json.push_back(d.object());
    }
    return r;
}

}  // namespace

TEST(CliOpen, PrintsTheRowsInListOrder)
{
    TempEnv env;
    const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Music.vkt")))
                               .track(makeTrack(QStringLiteral("Zappa"), QStringLiteral("Peaches"),
                                                QStringLiteral("/m/z"), QStringLiteral("1.mp3")))
                               .freeSlot()
                               .track(makeTrack(QStringLiteral("Bj\u00f6rk"), QStringLiteral("Joga"),
                                                QStringLiteral("/m/b"), QStringLiteral("2.mp3")))
                               .write();
    const CliRun r = cli(env, {QStringLiteral("open"), f.vkt});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, (QStringList{
                         "Bj\u00f6rk\tAlbum\t01\tJoga\t03:25\t1999\tPop\tNo\t/m/b\t2.mp3\tTRACK 3\t2024-05-01 12:00:00\t4096",
                         "Zappa\tAlbum\t01\tPeaches\t03:25\t1999\tPop\tNo\t/m/z\t1.mp3\tTRACK 1\t2024-05-01 12:00:00\t4096"}));
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    // The child kept its settings in the private home.
    EXPECT_TRUE(readFile(env.path(QStringLiteral(".config/ZEVSonorit/ZEVSonorit.ini")))
                    .contains("Last_Used_Lib=" + f.vkt.toUtf8()));
}

TEST(CliOpen, AnswersTheQuestionsInOrder)
{
    TempEnv env;
    const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Music.vkt")))
                               .text("A|B|01|T|03:00|1999|Pop|No|/m|a.mp3|TRACK 1|2024|1|x")
                               .text("A|B|01|T|03:00|1999|Pop|No|/m|b.mp3|TRACK 2|2024|1|x")
                               .text("A|B|01|T|03:00|1999|Pop|No|/m|c.mp3|TRACK 3|2024|1|x")
                               .write();
    struct Row {
        QStringList options;
        QStringList answers, files;
    };
    const Row rows[] = {
        {{"--answers", "yes,no"}, {"yes", "no", "no"}, {"a.mp3"}},
        {{"--answers=no,yes", "--answer", "yes"}, {"no", "yes", "yes"}, {"b.mp3", "c.mp3"}},
        {{}, {"no", "no", "no"}, {}},
    };
    for (const Row& row : rows) {
        const CliRun r = cli(env, row.options + QStringList{QStringLiteral("open"), f.vkt});
        EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
        QStringList answers, files;
        for (const QJsonObject& o : r.json) {
            EXPECT_EQ(o.value(QStringLiteral("title")).toString(), QStringLiteral("Invalid MP3 Items"));
            EXPECT_EQ(o.value(QStringLiteral("buttons")).toString(), QStringLiteral("yes_no"));
            EXPECT_TRUE(o.value(QStringLiteral("text")).toString().endsWith(
                QStringLiteral("Unknown Item 1: x\r\n\rDo you accept the known items?")));
            answers << o.value(QStringLiteral("answer")).toString();
        }
        for (const QString& line : r.out)
            files << line.section(QLatin1Char('\t'), 9, 9);
        EXPECT_EQ(answers, row.answers) << row.options.join(' ').toStdString();
        EXPECT_EQ(files, row.files) << row.options.join(' ').toStdString();
    }
}

TEST(CliOpen, FailuresAndUsage)
{
    TempEnv env;
    const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Broken.vkt")))
                               .key(QStringLiteral("ALBUMLIB_NAME"), env.path(QStringLiteral("none.tri")))
                               .write();
    const CliRun failed = cli(env, {QStringLiteral("open"), f.vkt});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(failed.out.isEmpty());
    ASSERT_EQ(failed.json.size(), 1u) << failed.err.toStdString();
    const QJsonObject& m = failed.json[0];
    EXPECT_EQ(m.value(QStringLiteral("title")).toString(), QStringLiteral("Open Library Failure"));
    EXPECT_TRUE(m.value(QStringLiteral("text")).toString().startsWith(
        QStringLiteral("An error occured whilst trying to open the initial Library.\r\nPlease try again later.\r\n")));
    EXPECT_EQ(m.value(QStringLiteral("buttons")).toString(), QStringLiteral("ok"));
    EXPECT_EQ(m.value(QStringLiteral("answer")).toString(), QStringLiteral("ok"));

    writeFile(env.path(QStringLiteral("notes.txt")), "x");
    const CliRun notLibrary = cli(env, {QStringLiteral("open"), env.path(QStringLiteral("notes.txt"))});
    EXPECT_EQ(notLibrary.exitCode, 1);
    ASSERT_EQ(notLibrary.json.size(), 1u);
    EXPECT_TRUE(notLibrary.json[0].contains(QStringLiteral("error")));

    const QList<QStringList> usage = {
        {}, {"open"}, {"open", f.vkt, f.vkt}, {"frobnicate", f.vkt}, {"open", f.vkt, "--answers"}};
    for (const QStringList& args : usage) {
        const CliRun r = cli(env, args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("usage: sonorit-cli"))) << args.join(' ').toStdString();
        EXPECT_TRUE(r.out.isEmpty());
    }
}
