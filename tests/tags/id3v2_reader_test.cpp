// The walk over a whole tag in its three modes, the genre rule and the
// padding rule.
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "tags/id3v2_reader.h"
#include "tags/tag2_header.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
// Artist Album Track Year Title VA Time Length Genre Cover_File Cover_Original Frames Comment
QStringList fields(const Tag2FieldSet& t)
{
    return {t.Artist, t.Album, t.Track, t.Year, t.Title, t.VA, t.Time, t.Length, t.Genre,
            t.Cover_File, t.Cover_Original, t.Frames, t.Comment};
}

class Tag2Read : public ::testing::Test {
protected:
    QTemporaryDir dir;
    TagState state{dir.path() + "/"};

    void read(const QByteArray& file, Tag2Mode mode)
    {
        MemorySource src(file);
        Read_Tag2(state, src, "/m/a.mp3", mode);
    }
};

const QByteArray kFullBody = textFrame("TPE1", "  The Kinks ") + textFrame("TALB", "Arthur")
    + textFrame("TRCK", "3/12") + textFrame("TYER", "1969") + textFrame("TIT2", " Victoria ")
    + textFrame("TPE2", "Various Artists") + textFrame("TLEN", "215499") + textFrame("TCON", "(17)Rock")
    + textFrame("TFRM", "8250") + commFrame("eng", "", "  ") + apicFrame("image/jpeg", 3, "JPEG");
}  // namespace

TEST_F(Tag2Read, PanelModeFillsFieldsAndControls)
{
    // Within one read a later cover is written over the former; the next
    // read's cover replaces the file whole.
    read(tag(apicFrame("image/jpeg", 3, "LONGER") + apicFrame("image/jpeg", 3, "AB")), Tag2Mode::Panel);
    EXPECT_EQ(readFile(state.coverPath()), "ABNGER");
    read(tag(kFullBody) + mp3Frame(), Tag2Mode::Panel);
    EXPECT_EQ(fields(state.Tag2_Fields),
              QStringList({"The Kinks", "Arthur", "3/12", "1969", "Victoria", "Various Artists", "", "215499",
                           "(17)Rock", "/m/a.mp3", "/m/a.mp3", "8250", TagStamp()}));
    const Tag2Panel& p = state.Tag2_Panel;
    EXPECT_EQ(QStringList({p.Tag2_Text_Artist, p.Tag2_Text_Track, p.Tag2_Text_Time, p.Tag2_Text_Genre, p.Tag2_Text_Comment}),
              QStringList({"The Kinks", "3/12", "03:35", "Rock", TagStamp()}));
    EXPECT_EQ(p.Tag2_Combo_VA, 1);
    EXPECT_EQ(p.Tag2_Combo_Genre, 17);
    EXPECT_FALSE(p.Tag2_Text_Genre_Enabled);
    EXPECT_TRUE(state.Tag2_Present);
    EXPECT_EQ(state.Tag2_Total_Size, kFullBody.size() + 10);
    EXPECT_EQ(readFile(state.coverPath()), "JPEG");

    // The next read of a file without a tag blanks all of it, cover included.
    read(mp3Frame(), Tag2Mode::Panel);
    EXPECT_EQ(fields(state.Tag2_Fields), QStringList(13, QString()));
    EXPECT_EQ(QStringList({p.Tag2_Text_Artist, p.Tag2_Text_Genre}), QStringList({"", "Unknown"}));
    EXPECT_EQ(p.Tag2_Combo_Genre, 148);
    EXPECT_EQ(p.Tag2_Combo_VA, 0);
    EXPECT_FALSE(state.Tag2_Present);
    EXPECT_FALSE(QFile::exists(state.coverPath()));
}

TEST_F(Tag2Read, LengthAndFrameCountBelieveEachOtherOnly)
{
    struct Row {
        QByteArray body;
        QStringList lengthFramesTime;
    };
    const Row rows[] = {
        {textFrame("TFRM", "100") + textFrame("TLEN", "2600"), {"2600", "100", "00:03"}},
        {textFrame("TFRM", "100"), {"", "", ""}},
        {textFrame("TLEN", "2600") + textFrame("TFRM", "0"), {"2600", "", "00:03"}},
        {textFrame("TLEN", "999") + textFrame("TFRM", "100"), {"", "", ""}},  // too short a length
        {textFrame("TLEN", "4000000"), {"4000000", "", "66:40"}},           // minutes not cut at 59
    };
    for (const Row& r : rows) {
        read(tag(r.body), Tag2Mode::Panel);
        EXPECT_EQ(QStringList({state.Tag2_Fields.Length, state.Tag2_Fields.Frames, state.Tag2_Panel.Tag2_Text_Time}),
                  r.lengthFramesTime);
    }
}

TEST_F(Tag2Read, OtherVersionsAndTheExtendedHeader)
{
    const QByteArray body = textFrame("TIT2", "Song");
    for (char version : {2, 4}) {
        read(tag(body, version), Tag2Mode::Panel);
        EXPECT_FALSE(state.Tag2_Present);
        EXPECT_TRUE(state.Tag2_Fields.Title.isEmpty());
        read(tag(body, version), Tag2Mode::Import);
        EXPECT_TRUE(state.Tag2_Fields.Genre.isEmpty()) << "no tag, not even the Unknown genre";
    }
    // Extended header: frames from position 21, with the CRC flag from 25.
    read(tag(be32(6) + QByteArray(6, '\0') + body, 3, 0x40), Tag2Mode::Panel);
    EXPECT_EQ(state.Tag2_Fields.Title, "Song");
    read(tag(be32(10) + QByteArray("\x80\0", 2) + QByteArray(8, '\0') + body, 3, 0x40), Tag2Mode::Panel);
    EXPECT_EQ(state.Tag2_Fields.Title, "Song");
    MemorySource src(tag(body, 3, 0x40));
    EXPECT_EQ(Find_Tag2(src)->End(), body.size() + 11);
}

TEST_F(Tag2Read, TheWalkEndsAtAnUnknownNameWhichMayBePadding)
{
    const QByteArray before = textFrame("TXXX", "x") + frame("PRIV", "o") + frame("WXXX", "u") + textFrame("TIT2", "Seen");
    read(tag(before + frame("XYZ1", "data") + textFrame("TPE1", "Hidden")), Tag2Mode::Panel);
    EXPECT_EQ(QStringList({state.Tag2_Fields.Title, state.Tag2_Fields.Artist}), QStringList({"Seen", ""}));
    EXPECT_EQ(state.Tag2_Padding_Size, 0);

    // Zeros behind the frames are padding: its size and 1-based position;
    // mode 1 does not look.
    const QByteArray padded = tag(before + QByteArray(100, '\0'));
    read(padded + mp3Frame(), Tag2Mode::Panel);
    EXPECT_EQ(state.Tag2_Padding_Size, 100);
    EXPECT_EQ(state.Tag2_Padding_Position, 11 + before.size());
    state.Tag2_Padding_Size = 0;
    read(padded, Tag2Mode::Import);
    EXPECT_EQ(state.Tag2_Padding_Size, 0);
    read(tag(before) + mp3Frame(), Tag2Mode::Panel);  // ends exactly at its end
    EXPECT_EQ(state.Tag2_Padding_Position, 0);

    // A frame met twice: the last one counts. A wild size ends the walk.
    QByteArray wild = textFrame("TIT2", "One") + textFrame("TIT2", "Two") + textFrame("TPE1", "A");
    wild.replace(wild.size() - 7, 4, be32(0xFFFFFFFF));
    read(tag(wild + textFrame("TALB", "Never")), Tag2Mode::Panel);
    EXPECT_EQ(QStringList({state.Tag2_Fields.Title, state.Tag2_Fields.Album}), QStringList({"Two", ""}));
}

TEST(GenreRule, TconTexts)
{
    struct Row {
        QString tcon, name;
        int entry;
        bool enabled;
    };
    const Row rows[] = {
        {"(17)Rock", "Rock", 17, false},  {"(9)", "Metal", 9, false},       {"(RX)", "Remix", 149, true},
        {"(CR)", "Cover", 149, true},     {"(255)", "Unknown", 148, false}, {"(147)", "Synth Pop", 147, false},
        {"(-5)", "Unknown", 148, false},  {"(1234)", "Unknown", 148, false}, {"(", "Unknown", 148, false},
        {"Polka", "Polka", 75, false},    {"Krautrock", "Krautrock", 149, true}, {"polka", "polka", 149, true},
    };
    for (const Row& r : rows) {
        const GenreChoice g = Genre_From_Tcon(r.tcon);
        EXPECT_EQ(g.name, r.name);
        EXPECT_EQ(g.entry, r.entry) << r.tcon.toStdString();
        EXPECT_EQ(g.boxEnabled, r.enabled) << r.tcon.toStdString();
    }
}

TEST_F(Tag2Read, ImportAndQuickModes)
{
    state.Tag2_Fields.Comment = state.Tag2_Fields.Length = "kept";
    read(tag(kFullBody), Tag2Mode::Import);
    EXPECT_EQ(fields(state.Tag2_Fields), QStringList({"The Kinks", "Arthur", "3/12", "1969", "Victoria", "Yes", "03:35",
                                                      "kept", "Rock", "", "", "", "kept"}));
    EXPECT_FALSE(state.Tag2_Present);
    read(tag(textFrame("TPE2", "Someone") + textFrame("TLEN", "400")), Tag2Mode::Import);
    EXPECT_EQ(fields(state.Tag2_Fields).mid(4, 5), QStringList({"", "No", "", "kept", "Unknown"}));

    // Quick mode fills its own set and cover file; a comment's NULs go.
    const QByteArray body = textFrame("TPE1", "Artist") + textFrame("TPE2", "Various Artists") + textFrame("TCON", "(RX)")
        + textFrame("TLEN", "61000") + textFrame("TFRM", "2335") + commFrame("deu", "d", QByteArray("a\0b", 3))
        + apicFrame("image/jpeg", 3, "Q");
    read(tag(body), Tag2Mode::Quick);
    EXPECT_EQ(fields(state.Tag2_Quick_Fields), QStringList({"Artist", "", "", "", "", "Yes", "01:01", "61000", "Remix",
                                                            "/m/a.mp3", "/m/a.mp3", "2335", "ab"}));
    EXPECT_EQ(state.FT_Tag2_Fields.Comment_Language, "deu");
    EXPECT_EQ(readFile(state.quickCoverPath()), "Q");
    EXPECT_EQ(state.Tag2_Fields.Genre, "Unknown");  // the other set is left alone

    // "Yes" written back by a retag is not the flag; a zero time empties
    // length, time and with them the frame count.
    read(tag(textFrame("TPE2", "Yes") + textFrame("TLEN", "0400") + textFrame("TFRM", "9")), Tag2Mode::Quick);
    EXPECT_EQ(fields(state.Tag2_Quick_Fields), QStringList(13, QString()));
    EXPECT_FALSE(QFile::exists(state.quickCoverPath()));
}
