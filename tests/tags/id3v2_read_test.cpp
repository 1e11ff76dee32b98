// Reading ID3v2.3: single frames, the walk in its three modes, synced lyrics.
#include "fixtures.h"
#include "tags/id3v2_frames.h"
#include "tags/sylt.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
// Artist Album Track Year Title VA Time Length Genre Cover_File Cover_Original Frames Comment
QStringList fields(const Tag2FieldSet& t)
{
    return {t.Artist, t.Album, t.Track, t.Year, t.Title, t.VA, t.Time, t.Length, t.Genre,
            t.Cover_File, t.Cover_Original, t.Frames, t.Comment};
}

struct Tag2Read : ::testing::Test {
    QTemporaryDir dir;
    TagState state{dir.path() + "/"};
    const Tag2FieldSet& f = state.Tag2_Fields;
    void read(const QByteArray& file, Tag2Mode mode = Tag2Mode::Panel)
    {
        MemorySource src(file);
        Read_Tag2(state, src, "/m/a.mp3", mode);
    }
};

const QByteArray kFullBody = textFrame("TPE1", "  The Kinks ") + textFrame("TALB", "Arthur")
    + textFrame("TRCK", "3/12") + textFrame("TYER", "1969") + textFrame("TIT2", " Victoria ")
    + textFrame("TPE2", "Various Artists") + textFrame("TLEN", "215499") + textFrame("TCON", "(17)Rock")
    + textFrame("TFRM", "8250") + commFrame("eng", "", "  ") + apicFrame("image/jpeg", 3, "JPEG");

QByteArray syllable(const QByteArray& text, quint32 ms) { return text + '\0' + be32(ms); }

QByteArray sylt(const QByteArray& syllables, char format = 2, char type = 1)
{
    return frame("SYLT", QByteArray("\0eng", 4) + format + type + "desc" + '\0' + syllables);
}

// The count, then entries 1 to the end as "text@time".
QStringList entries(const std::vector<QString>& text, const std::vector<qint32>& time, int count)
{
    QStringList out{QString::number(count)};
    for (size_t i = 1; i < text.size() && i < time.size(); ++i)
        out << text[i] + '@' + QString::number(time[i]);
    return out;
}
}  // namespace

TEST(Tag2Frames, TextAndCommentEncodings)
{
    const QByteArray cut = textFrame("TALB", "Abbey Road").replace(4, 4, be32(0xFFFFFFF0));
    const std::pair<QByteArray, QString> texts[] = {
        {frame("TIT2", QByteArray("\0Abba", 5)), "Abba"},
        {frame("TIT2", QByteArray("\0Rock\0Pop", 9)), "RockPop"},  // NUL-separated strings run together
        {frame("TIT2", QByteArray("\0", 1)), "0"},                 // empty text
        {frame("TIT2", QByteArray("\0\x80 \xE9", 4)), "€ é"},      // the single-byte page
        {frame("TIT2", '\x01' + utf16("Hé", false)), "Hé"},
        {frame("TIT2", '\x01' + utf16("Hé", true)), "Hé"},
        {frame("TIT2", '\x01' + utf16("Ab", false) + QByteArray(2, '\0')), "Ab"},  // terminator
        {frame("TIT2", '\x01' + utf16("Ab", true) + 'x'), "Ab"},                   // half a unit is not read
        {frame("TIT2", '\x01' + utf16(QString(QChar(0x80)), false)), "€"},         // through the page
        {frame("TIT2", '\x01' + utf16("aĀb", false)), ""},                         // a unit above 255 fails
        {frame("TIT2", QByteArray("\x01\xFF\xFE", 3)), "0"},                      // only a byte order mark
        {frame("TIT2", QByteArray("\x03" "abc", 4)), "0"},                         // unknown encoding
        {cut, "Abbey Road"},  // a size past the end of the file reads what is there
        {"TIT2", ""},         // no frame header: the failure gives "", not "0"
    };
    for (const auto& [bytes, expected] : texts) {
        MemorySource src(bytes);
        EXPECT_EQ(Read_Text_Frame(src, 1), expected) << bytes.toHex().toStdString();
    }

    // UTF-16 comments, each part with its mark; a unit above 255 fails the text, not the language.
    TagState s;
    const QByteArray head = QByteArray("\x01" "fra", 4) + utf16("D", true) + QByteArray(2, '\0');
    MemorySource wide(frame("COMM", head + utf16("Grüße", false))), bad(frame("COMM", head + utf16("Ā", false)));
    EXPECT_EQ(Read_Comment_Frame(s, wide, 1) + s.Comment_Description, "GrüßeD");
    EXPECT_EQ(Read_Comment_Frame(s, bad, 1), "");
    EXPECT_EQ(QStringList({s.Comment_Language, s.Comment_Text_Read}), QStringList({"fra", "Grüße"}));
}

TEST_F(Tag2Read, PanelModeAndTheWalk)
{
    // JPEG front covers only, MIME by the encoding byte; a later one overlays, a cut one is none.
    const QByteArray image = "\xFF\xD8\xFF\xE0" + QByteArray("jpegdata").repeated(1200);  // crosses blocks
    read(tag(frame("APIC", '\x01' + utf16("image/jpeg", false) + QByteArray(2, '\0') + '\x03' + utf16("d", true)
                               + QByteArray(2, '\0') + image)
             + apicFrame("image/png", 3, "PNG") + apicFrame("image/jpeg", 4, "BACK")));
    EXPECT_EQ(readFile(state.coverPath()), image);
    read(tag(apicFrame("image/jpg", 3, "LONG") + apicFrame("image/jpeg", 3, "AB") + apicFrame("image/jpeg", 3, "0123"))
             .chopped(3));
    EXPECT_EQ(readFile(state.coverPath()), "ABNG");
    // A UTF-16 description, empty or beyond the page, is passed by.
    for (const QByteArray& description : {utf16("封面", true) + QByteArray(2, '\0'), QByteArray(2, '\0')}) {
        read(tag(frame("APIC", QByteArray("\x01" "image/jpeg\0\x03", 13) + description + "IMG")));
        EXPECT_EQ(readFile(state.coverPath()), "IMG");
    }
    read(tag(kFullBody) + mp3Frame());
    EXPECT_EQ(fields(f), QStringList({"The Kinks", "Arthur", "3/12", "1969", "Victoria", "Various Artists", "",
                                      "215499", "(17)Rock", "/m/a.mp3", "/m/a.mp3", "8250", TagStamp()}));
    const Tag2Panel& p = state.Tag2_Panel;
    EXPECT_EQ(QStringList({p.Tag2_Text_Artist, p.Tag2_Text_Track, p.Tag2_Text_Time, p.Tag2_Text_Genre,
                           p.Tag2_Text_Comment}), QStringList({"The Kinks", "3/12", "03:35", "Rock", TagStamp()}));
    EXPECT_EQ(std::make_tuple(p.Tag2_Combo_VA, p.Tag2_Combo_Genre, p.Tag2_Text_Genre_Enabled), std::tuple(1, 17, 0));
    EXPECT_EQ(state.Tag2_Total_Size, kFullBody.size() + 10);
    EXPECT_EQ(readFile(state.coverPath()), "JPEG");
    // The next read of a file without a tag blanks all of it, cover included.
    read(mp3Frame());
    EXPECT_EQ(fields(f), QStringList(13, QString()));
    EXPECT_EQ(std::make_tuple(p.Tag2_Text_Artist, p.Tag2_Text_Genre, p.Tag2_Combo_VA, p.Tag2_Combo_Genre),
              std::make_tuple(QString(), QString("Unknown"), 0, 148));
    EXPECT_FALSE(QFile::exists(state.coverPath()));

    // Length and frame count believe each other only.
    const std::pair<QByteArray, QStringList> lengths[] = {
        {textFrame("TFRM", "100") + textFrame("TLEN", "2600"), {"2600", "100", "00:03"}},
        {textFrame("TFRM", "100"), {"", "", ""}},
        {textFrame("TLEN", "2600") + textFrame("TFRM", "0"), {"2600", "", "00:03"}},
        {textFrame("TLEN", "999") + textFrame("TFRM", "100"), {"", "", ""}},  // too short a length
        {textFrame("TLEN", "4000000"), {"4000000", "", "66:40"}},           // minutes not cut at 59
    };
    for (const auto& [body, lengthFramesTime] : lengths) {
        read(tag(body));
        EXPECT_EQ(QStringList({f.Length, f.Frames, p.Tag2_Text_Time}), lengthFramesTime);
    }

    // Where the walk starts and ends: Title, Album, whether there is a tag, padding size and position.
    const QByteArray song = textFrame("TIT2", "Song");
    const QByteArray before = frame("TXXX", "x") + frame("PRIV", "o") + frame("WXXX", "u") + textFrame("TIT2", "Seen");
    const QByteArray wild = QByteArray(textFrame("TIT2", "One") + textFrame("TIT2", "Two") + textFrame("TPE1", "A"))
                                .replace(32, 4, be32(0xFFFFFFFF));
    const std::pair<QByteArray, const char*> walks[] = {
        {tag(song, 2), "  no 0 0"},
        {tag(song, 4), "  no 0 0"},
        {tag(be32(6) + QByteArray(6, '\0') + song, 3, 0x40), "Song  yes 0 0"},  // extended header: frames from 21
        {tag(be32(10) + QByteArray("\x80\0", 2) + QByteArray(8, '\0') + song, 3, 0x40), "Song  yes 0 0"},  // CRC: 25
        // An unknown name ends the walk; with zero size bytes it is padding.
        {tag(before + frame("XYZ1", "data") + textFrame("TALB", "Hidden")), "Seen  yes 0 0"},
        {tag(before + QByteArray(100, '\0')) + mp3Frame(), "Seen  yes 100 59"},
        {tag(before) + mp3Frame(), "Seen  yes 0 0"},
        // A frame met twice: the last one counts. A wild size ends the walk.
        {tag(wild + textFrame("TALB", "Never")), "Two  yes 0 0"},
    };
    for (const auto& [file, expected] : walks) {
        read(file);
        EXPECT_EQ(QString("%1 %2 %3 %4 %5").arg(f.Title, f.Album, state.Tag2_Present ? "yes" : "no")
                      .arg(state.Tag2_Padding_Size).arg(state.Tag2_Padding_Position), expected);
    }
}

TEST(GenreRule, TconTexts)
{
    const std::pair<QString, QString> rows[] = {  // name, combo entry, box open
        {"(17)Rock", "Rock 17"},  {"(9)", "Metal 9"},         {"(RX)", "Remix 149 open"}, {"(CR)", "Cover 149 open"},
        {"(255)", "Unknown 148"}, {"(147)", "Synth Pop 147"}, {"(-5)", "Unknown 148"},    {"(1234)", "Unknown 148"},
        {"(", "Unknown 148"},     {"Polka", "Polka 75"},      {"polka", "polka 149 open"},
    };
    for (const auto& [tcon, expected] : rows) {
        const GenreChoice g = Genre_From_Tcon(tcon);
        EXPECT_EQ(g.name + ' ' + QString::number(g.entry) + (g.boxEnabled ? " open" : ""), expected);
    }
}

TEST_F(Tag2Read, ImportAndQuickModes)
{
    state.Tag2_Fields.Comment = state.Tag2_Fields.Length = "kept";
    read(tag(kFullBody + QByteArray(100, '\0')), Tag2Mode::Import);
    EXPECT_EQ(fields(f), QStringList({"The Kinks", "Arthur", "3/12", "1969", "Victoria", "Yes", "03:35", "kept", "Rock",
                                      "", "", "", "kept"}));
    EXPECT_FALSE(state.Tag2_Present);
    EXPECT_EQ(state.Tag2_Padding_Size, 0);  // not looked for
    read(tag(textFrame("TPE2", "Someone") + textFrame("TLEN", "400")), Tag2Mode::Import);
    EXPECT_EQ(fields(f).mid(4, 5), QStringList({"", "No", "", "kept", "Unknown"}));

    // Quick mode fills its own set and cover file; a comment's NULs go.
    read(tag(textFrame("TPE1", "Artist") + textFrame("TPE2", "Various Artists") + textFrame("TCON", "(RX)")
             + textFrame("TLEN", "61000") + textFrame("TFRM", "2335") + commFrame("deu", "d", QByteArray("a\0b", 3))
             + apicFrame("image/jpeg", 3, "Q")),
         Tag2Mode::Quick);
    EXPECT_EQ(fields(state.Tag2_Quick_Fields), QStringList({"Artist", "", "", "", "", "Yes", "01:01", "61000", "Remix",
                                                            "/m/a.mp3", "/m/a.mp3", "2335", "ab"}));
    EXPECT_EQ(QStringList({state.FT_Tag2_Fields.Comment_Language, f.Genre}), QStringList({"deu", "Unknown"}));
    EXPECT_EQ(readFile(state.quickCoverPath()), "Q");
    // A retag's "Yes" is not the flag; a zero time empties length, time and frame count.
    read(tag(textFrame("TPE2", "Yes") + textFrame("TLEN", "0400") + textFrame("TFRM", "9")), Tag2Mode::Quick);
    EXPECT_EQ(fields(state.Tag2_Quick_Fields), QStringList(13, QString()));
    EXPECT_FALSE(QFile::exists(state.quickCoverPath()));
    read(tag(textFrame("TIT2", "Song"), 4), Tag2Mode::Import);
    EXPECT_EQ(fields(f).mid(4, 5), QStringList({"", "", "", "kept", ""}));  // no tag, no Unknown genre
}

TEST(SyncedLyrics, LinesSyllablesAndWhatLoadsNothing)
{
    const QByteArray song = syllable("\nHel", 1000) + syllable("-lo", 1500) + syllable(" world", 1800)
        + syllable("\nBye", 4000) + syllable("\nA longer line", 5000) + syllable("\nA longer lin\xE9", 6000);
    TagState state;
    MemorySource src(tag(textFrame("TIT2", "t") + frame("APIC", "x") + textFrame("TXXX", "y") + sylt(song)));
    ASSERT_TRUE(Read_Synced_Lyrics(state, src));
    const LyricState& l = state.Lyrics;
    // A leading hyphen goes; a line has its first syllable's time; the first longest line counts.
    EXPECT_EQ(entries(l.Lyric_Text, l.Lyric_Time, l.Lyric_Count),
              QStringList({"4", "Hello world@1000", "Bye@4000", "A longer line@5000", "A longer liné@6000"}));
    EXPECT_EQ(std::make_pair(l.Lyric_Longest, l.Time_Stamp_Format), std::make_pair(3, 2));
    // Only the last syllable keeps its entry.
    EXPECT_EQ(entries(l.Syllable_Text, l.Syllable_Time, l.Syllable_Count),
              QStringList({"6", "@0", "@0", "@0", "@0", "@0", "A longer liné@6000"}));
    // 16-bit units, low byte first, no byte order mark.
    LyricState wide;
    MemorySource wideSrc(frame("SYLT", QByteArray("\x01" "eng\x02\x01" "d\0\0\0\n\0H\0i\0\0\0", 18) + be32(250)
                                           + QByteArray("!\0\0\0", 4) + be32(300)));
    ASSERT_TRUE(Parse_SYLT(wide, wideSrc, 1));
    EXPECT_EQ(entries(wide.Lyric_Text, wide.Lyric_Time, wide.Lyric_Count), QStringList({"1", "Hi!@250"}));

    const std::pair<const char*, QByteArray> nothing[] = {
        {"first syllable without a line feed", tag(sylt(syllable("Hel", 1) + syllable("\nlo", 2)))},
        {"time stamps in frames", tag(sylt(song, 1))},
        {"content other than lyrics", tag(sylt(song, 2, 2))},
        {"a name outside the list before SYLT", tag(frame("XYZW", "") + sylt(song))},
        {"no SYLT frame", tag(textFrame("TIT2", "t"))},
        {"frame cut by the end of the file", tag(sylt(song)).chopped(3)},
        {"unit above 255", tag(frame("SYLT", QByteArray("\x01" "eng\x02\x01\0\0\n\0\0\x01\0\0", 14) + be32(1)))},
    };
    for (const auto& [name, file] : nothing) {
        MemorySource bad(file);
        EXPECT_FALSE(Read_Synced_Lyrics(state, bad)) << name;
        EXPECT_EQ(state.Lyrics.Lyric_Count, 4) << name << ": the lyrics loaded before stay";
    }
}
