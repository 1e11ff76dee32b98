// The 128-byte ID3v1 tag at the end of a file: read, written, and its failures.
#include "fixtures.h"
#include "tags/id3v1.h"
#include "tests/support/scripted_ui.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
QByteArray fixed(const QByteArray& text, int width) { return text.leftJustified(width, ' ', true); }

// The text fields as the panel shows them (up to a NUL), ZeroByte, the panel's track and genre.
QStringList shown(const Tag1Record& r)
{
    return {r.Title.shown().trimmed(), r.Artist.shown().trimmed(), r.Album.shown().trimmed(), r.Year.shown().trimmed(),
            r.Comment.shown().trimmed(), QString::number(r.ZeroByte), Tag1_Track_Text(r.Track),
            Genre_Names()[Tag1_Genre_Entry(r.Genre)]};
}
}  // namespace

TEST(Tag1, ReadsWritesAndReportsFailuresWithTheSystemsWords)
{
    TempEnv env;
    ScriptedUi ui;
    TagState state;
    Tag1Record& r = state.Tag1_Record;
    const QString path = env.path("a.mp3");
    // A file that is only a tag, with a NUL a foreign tagger left in a field.
    writeFile(path, "TAG" + fixed(QByteArray("Song\0junk", 9), 30) + fixed("Artist", 30) + fixed("", 30) + "1999"
                        + fixed("Nice", 28) + QByteArray("\0\x07\x11", 3));
    Read_Tag1(state, path, ui);
    EXPECT_EQ(shown(r), QStringList({"Song", "Artist", "", "1999", "Nice", "0", "07", "Rock"}));
    EXPECT_EQ(r.Title.text(), fixed(QByteArray("Song\0junk", 9), 30));
    // An ID3v1.0 comment of 30 characters: the last two land in ZeroByte and Track.
    writeFile(path, QByteArray(30, 'a') + "TAG" + QByteArray(90, 'x') + "2001abcdefghijklmnopqrstuvwxyz12\x03\x04\x05");
    Read_Tag1(state, path, ui);
    EXPECT_EQ(shown(r).mid(3), QStringList({"2001", "abcdefghijklmnopqrstuvwxyz12", "3", "04", "Funk"}));
    // No tag: blanks, track 0, genre 0, and ZeroByte as it was.
    writeFile(path, QByteArray(500, 'b'));
    Read_Tag1(state, path, ui);
    EXPECT_EQ(shown(r), QStringList({"", "", "", "", "", "3", "00", "Blues"}));

    // Written in the program's page, cut to the field, in place the second time.
    const QByteArray audio(1000, '\x11');
    writeFile(path, audio);
    r.Title = QString::fromUtf8("Café € and a title that is far too long");
    std::tie(r.Artist, r.Album, r.Year, r.Comment, r.ZeroByte, r.Track, r.Genre) =
        std::make_tuple("Band", "", "2024", "c", 0, 12, 255);
    ASSERT_TRUE(Write_Tag1(state, path, ui));
    EXPECT_EQ(readFile(path), audio + "TAG" + "Caf\xE9 \x80 and a title that is far" + fixed("Band", 30)
                                  + fixed("", 30) + "2024" + fixed("c", 28) + QByteArray("\0\x0C\xFF", 3));
    r.Track = 123;
    ASSERT_TRUE(Write_Tag1(state, path, ui));
    Read_Tag1(state, path, ui);
    EXPECT_EQ(readFile(path).size(), audio.size() + 128);
    EXPECT_EQ(shown(r),
              QStringList({"Café € and a title that is far", "Band", "", "2024", "c", "0", "23", "Unknown"}));
    // The old table's spelling; the program's own two entries are no genres; 149 is the last entry.
    EXPECT_EQ(QStringList({Genre_Names()[67], QString::number(Genre_Index("Unknown"))}), QStringList({"Phychedelic", "-1"}));
    QStringList entries;
    for (const int genre : {147, 148, 149, 150, 255})
        entries << Genre_Names()[Tag1_Genre_Entry(quint8(genre))];
    EXPECT_EQ(entries, QStringList({"Synth Pop", "Unknown", "User Defined", "Unknown", "Unknown"}));

    // Missing: blanks. Shorter than a tag: the position before its start fails. A folder,
    // standing in for a read-only file (which the tests' user may still write), fails both.
    ASSERT_TRUE(ui.messages.empty());
    Read_Tag1(state, env.path("missing.mp3"), ui);
    EXPECT_EQ(shown(r), QStringList({"", "", "", "", "", "0", "00", "Blues"}));
    writeFile(path, QByteArray(100, 'x'));
    Read_Tag1(state, path, ui);
    EXPECT_FALSE(Write_Tag1(state, path, ui));
    EXPECT_EQ(readFile(path), QByteArray(100, 'x'));
    EXPECT_FALSE(Write_Tag1(state, env.root(), ui));
    Read_Tag1(state, env.root(), ui);
    // A file made read-only stays so, whoever runs the program.
    writeFile(path, audio);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup);
    EXPECT_FALSE(Write_Tag1(state, path, ui));
    EXPECT_EQ(readFile(path), audio);
    ASSERT_EQ(ui.messages.size(), 6u);
    for (const auto& m : ui.messages)
        EXPECT_TRUE(m.title == " Error" && !m.text.isEmpty());
}
