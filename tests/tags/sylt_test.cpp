// Synced lyrics: the walk to the SYLT frame and the frame's syllables.
#include <gtest/gtest.h>

#include "tags/sylt.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
QByteArray syllable(const QByteArray& text, quint32 ms) { return text + '\0' + be32(ms); }

QByteArray sylt(const QByteArray& syllables, char format = 2, char type = 1)
{
    return frame("SYLT", QByteArray("\0eng", 4) + format + type + "desc" + '\0' + syllables);
}

const QByteArray kSong = syllable("\nHel", 1000) + syllable("-lo", 1500) + syllable(" world", 1800)
    + syllable("\nBye", 4000) + syllable("\nA longer line", 5000) + syllable("\nA longer lin\xE9", 6000);
}  // namespace

TEST(SyncedLyrics, LinesSyllablesAndTheLongestLine)
{
    TagState state;
    MemorySource src(tag(textFrame("TIT2", "t") + frame("APIC", "x") + textFrame("TXXX", "y") + sylt(kSong)));
    ASSERT_TRUE(Read_Synced_Lyrics(state, src));
    const LyricState& l = state.Lyrics;
    ASSERT_EQ(l.Lyric_Count, 4);
    ASSERT_EQ(l.Lyric_Text.size(), 5u);
    EXPECT_EQ(l.Lyric_Text[1], "Hello world");  // the hyphen of a first character is dropped
    EXPECT_EQ(l.Lyric_Time[1], 1000);           // a line keeps the time of its first syllable
    EXPECT_EQ(l.Lyric_Text[2], "Bye");
    EXPECT_EQ(l.Lyric_Time[2], 4000);
    EXPECT_EQ(l.Lyric_Text[4], QString::fromUtf8("A longer liné"));
    EXPECT_EQ(l.Lyric_Longest, 3);  // the first of two equally long lines
    EXPECT_EQ(l.Time_Stamp_Format, 2);
    // Only the last syllable keeps its entry.
    ASSERT_EQ(l.Syllable_Count, 6);
    ASSERT_EQ(l.Syllable_Text.size(), 7u);
    EXPECT_TRUE(l.Syllable_Text[1].isEmpty());
    EXPECT_EQ(l.Syllable_Time[1], 0);
    EXPECT_EQ(l.Syllable_Text[6], QString::fromUtf8("A longer liné"));
    EXPECT_EQ(l.Syllable_Time[6], 6000);

    // 16-bit units, low byte first, no byte order mark.
    QByteArray wide = QByteArray("\x01" "eng\x02\x01", 6) + QByteArray("d\0\0\0", 4);
    wide += QByteArray("\n\0H\0i\0\0\0", 8) + be32(250) + QByteArray("!\0\0\0", 4) + be32(300);
    LyricState lyrics;
    MemorySource wideSrc(frame("SYLT", wide));
    ASSERT_TRUE(Parse_SYLT(lyrics, wideSrc, 1));
    EXPECT_EQ(lyrics.Lyric_Count, 1);
    EXPECT_EQ(lyrics.Lyric_Text[1], "Hi!");
    EXPECT_EQ(lyrics.Lyric_Time[1], 250);
}

TEST(SyncedLyrics, WhatLoadsNothing)
{
    TagState state;
    MemorySource good(tag(sylt(kSong)));
    ASSERT_TRUE(Read_Synced_Lyrics(state, good));

    struct Row {
        const char* name;
        QByteArray file;
    };
    QByteArray cut = tag(sylt(kSong));
    cut.chop(3);
    const Row rows[] = {
        {"first syllable without a line feed", tag(sylt(syllable("Hel", 1) + syllable("\nlo", 2)))},
        {"time stamps in frames", tag(sylt(kSong, 1))},
        {"content other than lyrics", tag(sylt(kSong, 2, 2))},
        {"a name outside the list before SYLT", tag(frame("XYZW", "") + sylt(kSong))},
        {"a tag of another version", tag(sylt(kSong), 4)},
        {"no SYLT frame", tag(textFrame("TIT2", "t"))},
        {"frame cut by the end of the file", cut},
        {"unit above 255", tag(frame("SYLT", QByteArray("\x01" "eng\x02\x01\0\0\n\0\0\x01\0\0", 14) + be32(1)))},
    };
    for (const Row& r : rows) {
        MemorySource src(r.file);
        EXPECT_FALSE(Read_Synced_Lyrics(state, src)) << r.name;
        EXPECT_EQ(state.Lyrics.Lyric_Count, 4) << r.name << ": the lyrics loaded before stay";
    }
}
