// INI files behave like the Windows profile calls, since library files made
// on Windows must read the same here and the program's own files must stay
// readable there.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <cstdio>

#include "shell/ini_file.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(IniFile, ReadsLikeTheProfileCalls)
{
    TempEnv env;
    const QString path = env.path("lib.vkt");
    writeFile(path, "[general]\r\n  lib_folder =  /music/a  \r\nLIB_FOLDER=/second\r\nEmpty=\r\n"
                    "a line without an equals sign\r\nQuoted=\"/x y\"\r\nLong=" + QByteArray(1200, 'a') + "\r\n"
                    "Name=Beyonc\xE9\r\n[ Other ]\r\nKey=other\r\n");
    const struct {
        const char *section, *key, *def;
        QString expected;
    } rows[] = {
        {"GENERAL", "LIB_FOLDER", "d", "/music/a"},  // any case, blanks dropped, first wins
        {"General", "empty", "d", ""},               // present but empty is not the default
        {"GENERAL", "missing", "d", "d"}, {"Nosuch", "Key", "d", "d"}, {"other", "KEY", "", "other"},
        {"GENERAL", "Quoted", "", "\"/x y\""},  // nothing is unquoted
        {"GENERAL", "Long", "", QString(999, 'a')}, {"GENERAL", "Name", "", "Beyonc\u00e9"},  // Windows-1252
    };
    const IniFile ini(path);
    for (const auto& r : rows)
        EXPECT_EQ(ini.read(r.section, r.key, r.def), r.expected) << r.section << "/" << r.key;
    EXPECT_EQ(IniFile(env.path("none.vkt")).read("A", "B", QString(1005, 'd')), QString(999, 'd'));

    // A file saved by an editor that puts a byte order mark in front.
    writeFile(path, "\xEF\xBB\xBF[GENERAL]\nALBUM_COUNT=7\n");
    EXPECT_EQ(ini.read("GENERAL", "ALBUM_COUNT", "0"), "7");
}

TEST(IniFile, WritesInPlaceIntoItsSectionOrAppends)
{
    TempEnv env;
    const QString path = env.path("w.vkt");
    const struct {
        const char *section, *key, *value;
        QByteArray expected;
    } rows[] = {  // each row writes into the file the previous one left
        {"a", "X", "9", "[A]\nX=9\n\n[B]\ny=2\n"},
        {"A", "z", "3", "[A]\nX=9\nz=3\n\n[B]\ny=2\n"},
        {"b", "Y", " 4 ", "[A]\nX=9\nz=3\n\n[B]\nY= 4 \n"},
        {"C", "k", "v", "[A]\nX=9\nz=3\n\n[B]\nY= 4 \n[C]\nk=v\n"},
    };
    writeFile(path, "[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
    const IniFile ini(path);
    for (const auto& r : rows) {
        EXPECT_TRUE(ini.write(r.section, r.key, r.value));
        EXPECT_EQ(readFile(path), r.expected) << r.section << "/" << r.key;
    }
    EXPECT_EQ(ini.read("B", "y", ""), "4");

    EXPECT_TRUE(IniFile(env.path("new.vkt")).write("GENERAL", "ID_COUNT", "0"));
    EXPECT_EQ(readFile(env.path("new.vkt")), "[GENERAL]\nID_COUNT=0\n");

    // An old Windows-1252 file keeps its text when a key is written.
    writeFile(path, "[GENERAL]\r\nLIB_FOLDER=/M\xFCsik/\r\n");
    EXPECT_TRUE(ini.write("GENERAL", "ID_COUNT", "3"));
    EXPECT_EQ(ini.read("GENERAL", "LIB_FOLDER", ""), "/M\u00fcsik/");
    EXPECT_EQ(ini.read("GENERAL", "ID_COUNT", ""), "3");
}

TEST(IniFile, ALargeFileIsReadOncePerChangeNotOncePerKey)
{
    TempEnv env;
    const QString path = env.path("big.vkt");
    QByteArray bytes = "[GENERAL]\nID_COUNT=3\n[NOTES]\n";
    for (int i = 0; i < 200000; ++i)
        bytes += "NOTE_" + QByteArray::number(i) + "=" + QByteArray(30, 'x') + "\n";
    bytes += "[DETAILS]\nPREFIX=False\n";
    writeFile(path, bytes);  // 8 MB
    const IniFile ini(path);
    QElapsedTimer took;
    took.start();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(ini.read("general", "id_count", "0"), "3");
        EXPECT_EQ(ini.read("DETAILS", "PREFIX", "True"), "False");
        EXPECT_TRUE(ini.write("GENERAL", "ID_COUNT", "3"));  // unchanged: not written
    }
    // Read once per key, this took ten seconds; under a sanitizer on a busy
    // machine the cached reads take under two.
    EXPECT_LT(took.elapsed(), 8000);
    // A change by another writer is seen at once.
    const QByteArray changed = readFile(path).replace("ID_COUNT=3", "ID_COUNT=4");
    writeFile(env.path("other"), changed);
    std::rename(QFile::encodeName(env.path("other")).constData(), QFile::encodeName(path).constData());
    EXPECT_EQ(ini.read("GENERAL", "ID_COUNT", "0"), "4");
}
