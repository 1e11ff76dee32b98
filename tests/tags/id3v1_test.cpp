// The 128-byte tag at the end of a file: reading, writing in place or
// appended, and the failures reported with the system's words.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tags/id3v1.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
QByteArray fixed(const QByteArray& text, int width) { return text.leftJustified(width, ' ', true); }

// Title Artist Album Year Comment as the panel shows them, then the bytes.
QStringList shown(const Tag1Record& r)
{
    return {r.Title.shown(), r.Artist.shown(), r.Album.shown(), r.Year.shown(), r.Comment.shown(),
            QString::number(r.ZeroByte), QString::number(r.Track), QString::number(r.Genre)};
}
}  // namespace

TEST(Tag1, ReadsTheLast128Bytes)
{
    QTemporaryDir dir;
    ScriptedUi ui;
    TagState state;
    const QString path = dir.filePath("a.mp3");

    // A file that is only a tag; a NUL a foreign tagger left stays in the
    // field, and the panel shows the text up to it.
    writeFile(path, "TAG" + fixed(QByteArray("Song\0junk", 9), 30) + fixed("Artist", 30) + fixed("", 30) + "1999"
                        + fixed("Nice", 28) + QByteArray("\0\x07\x11", 3));
    Read_Tag1(state, path, ui);
    EXPECT_EQ(shown(state.Tag1_Record), QStringList({"Song", fixed("Artist", 30), fixed("", 30), "1999",
                                                     fixed("Nice", 28), "0", "7", "17"}));
    EXPECT_EQ(state.Tag1_Record.Title.text().size(), 30);

    // An ID3v1.0 comment of 30 characters: 28 of them, the last two land in
    // ZeroByte and Track.
    writeFile(path, QByteArray(300, 'a') + "TAG" + QByteArray(90, 'x') + "2001abcdefghijklmnopqrstuvwxyz12\x03\x04\x05");
    Read_Tag1(state, path, ui);
    EXPECT_EQ(shown(state.Tag1_Record).mid(4), QStringList({"abcdefghijklmnopqrstuvwxyz12", "3", "4", "5"}));

    // No tag: blanks, track 0, genre 0, and ZeroByte as it was; the panel
    // then shows "00" and "Blues".
    writeFile(path, QByteArray(500, 'b'));
    Read_Tag1(state, path, ui);
    EXPECT_EQ(shown(state.Tag1_Record), QStringList({QString(30, ' '), QString(30, ' '), QString(30, ' '),
                                                     "    ", QString(28, ' '), "3", "0", "0"}));
    EXPECT_EQ(Tag1_Track_Text(state.Tag1_Record.Track), "00");
    EXPECT_EQ(Genre_Names()[Tag1_Genre_Entry(state.Tag1_Record.Genre)], "Blues");
    EXPECT_TRUE(ui.messages.empty());
}

TEST(Tag1, WritesInPlaceOrAppends)
{
    QTemporaryDir dir;
    ScriptedUi ui;
    TagState state;
    const QString path = dir.filePath("a.mp3");
    const QByteArray audio(1000, '\x11');
    writeFile(path, audio);

    Tag1Record& r = state.Tag1_Record;
    r.Title = QString::fromUtf8("Café € and a title that is far too long");
    r.Artist = "Band";
    r.Album = "";
    r.Year = "2024";
    r.Comment = "c";
    r.Track = 12;
    r.Genre = 255;
    ASSERT_TRUE(Write_Tag1(state, path, ui));
    EXPECT_EQ(readFile(path), audio + "TAG" + "Caf\xE9 \x80 and a title that is far" + fixed("Band", 30)
                                  + fixed("", 30) + "2024" + fixed("c", 28) + QByteArray("\0\x0C\xFF", 3));

    // The second write overwrites the tag: the file grows by 128 once.
    r.Track = 123;
    ASSERT_TRUE(Write_Tag1(state, path, ui));
    EXPECT_EQ(readFile(path).size(), audio.size() + 128);
    Read_Tag1(state, path, ui);
    EXPECT_EQ(r.Title.shown(), QString::fromUtf8("Café € and a title that is far"));
    EXPECT_EQ(Tag1_Track_Text(r.Track), "23");
    EXPECT_EQ(Genre_Names()[Tag1_Genre_Entry(r.Genre)], "Unknown");
    EXPECT_TRUE(ui.messages.empty());
}

TEST(Tag1, FailuresAreReportedWithTheSystemsWords)
{
    QTemporaryDir dir;
    ScriptedUi ui;
    TagState state;
    state.Tag1_Record.Title = "stale";
    Read_Tag1(state, dir.filePath("missing.mp3"), ui);
    EXPECT_EQ(state.Tag1_Record.Title.text(), QString(30, ' '));
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_FALSE(ui.messages[0].text.isEmpty());

    // Shorter than a tag: the position before the file's start fails.
    const QString shortFile = dir.filePath("short.mp3");
    writeFile(shortFile, QByteArray(100, 'x'));
    Read_Tag1(state, shortFile, ui);
    EXPECT_FALSE(Write_Tag1(state, shortFile, ui));
    EXPECT_EQ(readFile(shortFile).size(), 100);
    // What cannot be opened for writing fails both; a folder stands in for a
    // read-only file, which the tests' user may still be allowed to write.
    EXPECT_FALSE(Write_Tag1(state, dir.path(), ui));
    Read_Tag1(state, dir.path(), ui);
    EXPECT_EQ(ui.titles(), QStringList(5, " Error"));
}

TEST(Tag1, GenreNames)
{
    const QStringList& names = Genre_Names();
    ASSERT_EQ(names.size(), 150);
    EXPECT_EQ(QStringList({names[67], names[147], names[148], names[149]}),
              QStringList({"Phychedelic", "Synth Pop", "Unknown", "User Defined"}));
    EXPECT_EQ(Genre_Index("Unknown"), -1);  // the program's own entries are no genres
}
