// INI files behave like the Windows profile calls, since library files made
// on Windows must read the same here and the program's own files must stay
// readable there.
#include <gtest/gtest.h>

#include "shell/ini_file.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(IniFile, ReadsLikeTheProfileCalls)
{
    TempEnv env;
    const QString path = env.path(QStringLiteral("lib.vkt"));
    writeFile(path, "[general]\r\n"
                    "  lib_folder =  /music/a  \r\n"
                    "LIB_FOLDER=/second\r\n"
                    "Empty=\r\n"
                    "a line without an equals sign\r\n"
                    "Quoted=\"/x y\"\r\n"
                    "Long=" + QByteArray(1200, 'a') + "\r\n"
                    "Name=Beyonc\xE9\r\n"
                    "[ Other ]\r\n"
                    "Key=other\r\n");
    struct Row {
        const char *section, *key, *def;
        QString expected;
    };
    const Row rows[] = {
        {"GENERAL", "LIB_FOLDER", "d", QStringLiteral("/music/a")},  // any case, blanks dropped, first wins
        {"General", "empty", "d", QString()},                       // present but empty is not the default
        {"GENERAL", "missing", "d", QStringLiteral("d")},
        {"GENERAL", "Quoted", "", QStringLiteral("\"/x y\"")},        // nothing is unquoted
        {"GENERAL", "Long", "", QString(999, QLatin1Char('a'))},
        {"GENERAL", "Name", "", QStringLiteral("Beyonc\u00e9")},      // Windows-1252 file
        {"other", "KEY", "", QStringLiteral("other")},
        {"Nosuch", "Key", "d", QStringLiteral("d")},
    };
    const IniFile ini(path);
    for (const Row& r : rows)
        EXPECT_EQ(ini.read(QLatin1String(r.section), QLatin1String(r.key), QLatin1String(r.def)), r.expected)
            << r.section << "/" << r.key;
    EXPECT_EQ(IniFile(env.path(QStringLiteral("none.vkt"))).read(QStringLiteral("A"), QStringLiteral("B"),
                                                                  QString(1005, QLatin1Char('d'))),
              QString(999, QLatin1Char('d')));

    // A file saved by an editor that puts a byte order mark in front.
    writeFile(path, "\xEF\xBB\xBF[GENERAL]\nALBUM_COUNT=7\n");
    EXPECT_EQ(ini.read(QStringLiteral("GENERAL"), QStringLiteral("ALBUM_COUNT"), QStringLiteral("0")),
              QStringLiteral("7"));
}

TEST(IniFile, WritesInPlaceIntoItsSectionOrAppends)
{
    TempEnv env;
    const QString path = env.path(QStringLiteral("w.vkt"));
    struct Row {
        const char *section, *key, *value;
        QByteArray expected;
    };
    // Each row writes into the file the previous one left.
    const Row rows[] = {
        {"a", "X", "9", "[A]\nX=9\n\n[B]\ny=2\n"},
        {"A", "z", "3", "[A]\nX=9\nz=3\n\n[B]\ny=2\n"},
        {"b", "Y", " 4 ", "[A]\nX=9\nz=3\n\n[B]\nY= 4 \n"},
        {"C", "k", "v", "[A]\nX=9\nz=3\n\n[B]\nY= 4 \n[C]\nk=v\n"},
    };
    writeFile(path, "[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
    const IniFile ini(path);
    for (const Row& r : rows) {
        EXPECT_TRUE(ini.write(QLatin1String(r.section), QLatin1String(r.key), QLatin1String(r.value)));
        EXPECT_EQ(readFile(path), r.expected) << r.section << "/" << r.key;
    }
    EXPECT_EQ(ini.read(QStringLiteral("B"), QStringLiteral("y"), QString()), QStringLiteral("4"));

    const QString fresh = env.path(QStringLiteral("new.vkt"));
    EXPECT_TRUE(IniFile(fresh).write(QStringLiteral("GENERAL"), QStringLiteral("ID_COUNT"), QStringLiteral("0")));
    EXPECT_EQ(readFile(fresh), QByteArray("[GENERAL]\nID_COUNT=0\n"));

    // An old Windows-1252 file keeps its text when a key is written.
    writeFile(path, "[GENERAL]\r\nLIB_FOLDER=/M\xFCsik/\r\n");
    EXPECT_TRUE(ini.write(QStringLiteral("GENERAL"), QStringLiteral("ID_COUNT"), QStringLiteral("3")));
    EXPECT_EQ(ini.read(QStringLiteral("GENERAL"), QStringLiteral("LIB_FOLDER"), QString()),
              QStringLiteral("/M\u00fcsik/"));
    EXPECT_EQ(ini.read(QStringLiteral("GENERAL"), QStringLiteral("ID_COUNT"), QString()), QStringLiteral("3"));
}
