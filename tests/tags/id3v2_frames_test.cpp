// Single frames: text encodings, comments and cover pictures, bytes in and
// fields out.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tags/id3v2_frames.h"
#include "tags/tag_state.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
QString textOf(const QByteArray& frameBytes)
{
    MemorySource src(frameBytes);
    return Read_Text_Frame(src, 1);
}
}  // namespace

TEST(TextFrame, EncodingsAndTheirOddities)
{
    struct Row {
        const char* name;
        QByteArray data;  // encoding byte and text
        QString expected;
    };
    const Row rows[] = {
        {"plain", QByteArray("\0Abba", 5), "Abba"},
        {"NUL-separated strings run together", QByteArray("\0Rock\0Pop", 9), "RockPop"},
        {"empty text reads as 0", QByteArray("\0", 1), "0"},
        {"single-byte page", QByteArray("\0\x80 \xE9", 4), QString::fromUtf8("€ é")},
        {"UTF-16 little-endian", '\x01' + utf16(QString::fromUtf8("Hé"), false), QString::fromUtf8("Hé")},
        {"UTF-16 big-endian", '\x01' + utf16(QString::fromUtf8("Hé"), true), QString::fromUtf8("Hé")},
        {"UTF-16 with terminator", '\x01' + utf16("Ab", false) + QByteArray(2, '\0'), "Ab"},
        {"UTF-16 unit 0x80 goes through the page", '\x01' + utf16(QString(QChar(0x80)), false), QString::fromUtf8("€")},
        {"UTF-16 unit above 255 fails the read", '\x01' + utf16(QString::fromUtf8("aĀb"), false), ""},
        {"UTF-16 with only a byte order mark", QByteArray("\x01\xFF\xFE", 3), "0"},
        {"unknown encoding", QByteArray("\x03" "abc", 4), "0"},
    };
    for (const Row& r : rows)
        EXPECT_EQ(textOf(frame("TIT2", r.data)), r.expected) << r.name;

    // An odd UTF-16 length: the half unit at the end is not read.
    EXPECT_EQ(textOf(frame("TIT2", '\x01' + utf16("Ab", true) + 'x')), "Ab");
    // A size that runs past the end of the file reads what is there.
    QByteArray cut = textFrame("TALB", "Abbey Road");
    cut.replace(4, 4, be32(0xFFFFFFF0));
    EXPECT_EQ(textOf(cut), "Abbey Road");
    // No frame header at all: the failure gives the empty text, not "0".
    EXPECT_EQ(textOf("TIT2"), "");
}

TEST(CommentFrame, PartsAsReadAndTheQuickVariant)
{
    MemorySource src(commFrame("deu", "Note", QByteArray("Hi\0there", 8)));
    TagState state;
    EXPECT_EQ(Read_Comment_Frame(state, src, 1), QString::fromLatin1("Hi\0there", 8));
    EXPECT_EQ(QStringList({state.Comment_Language, state.Comment_Description, state.Comment_Text_Read}),
              QStringList({"deu", "Note", QString::fromLatin1("Hi\0there", 8)}));
    // The quick reader drops the NULs and keeps language and text in the
    // filename tagger's pair.
    TagState quick;
    EXPECT_EQ(Read_Comment_Quick(quick, src, 1), "Hithere");
    EXPECT_EQ(QStringList({quick.FT_Tag2_Fields.Comment_Language, quick.FT_Tag2_Fields.Comment_Read,
                           quick.Comment_Description, quick.Comment_Language, quick.Comment_Text_Read}),
              QStringList({"deu", "Hithere", "Note", "", ""}));

    // UTF-16: description big-endian, text with its own mark, little-endian.
    const QByteArray head = QByteArray("\x01" "fra", 4) + utf16("D", true) + QByteArray(2, '\0');
    MemorySource wide(frame("COMM", head + utf16(QString::fromUtf8("Grüße"), false)));
    EXPECT_EQ(Read_Comment_Frame(state, wide, 1), QString::fromUtf8("Grüße"));
    EXPECT_EQ(state.Comment_Description, "D");
    // A text unit above 255 fails the text; the language is still taken.
    MemorySource bad(frame("COMM", head + utf16(QString::fromUtf8("Ā"), false)));
    EXPECT_EQ(Read_Comment_Frame(state, bad, 1), "");
    EXPECT_EQ(QStringList({state.Comment_Language, state.Comment_Text_Read}), QStringList({"fra", "Grüße"}));
}

TEST(Picture, OnlyJpegFrontCoversAreExtracted)
{
    QTemporaryDir dir;
    const QString target = dir.filePath("Cover.jpg");
    const QByteArray image = QByteArray("\xFF\xD8\xFF\xE0", 4) + repeat("jpegdata", 1200);  // crosses blocks

    MemorySource front(apicFrame("image/jpeg", 3, image, "desc"));
    ASSERT_TRUE(Extract_Picture(front, 1, target));
    EXPECT_EQ(readFile(target), image);

    for (const QByteArray& refused : {apicFrame("image/png", 3, "PNG"), apicFrame("image/jpeg", 4, "BACK")}) {
        MemorySource src(refused);
        EXPECT_FALSE(Extract_Picture(src, 1, target));
        EXPECT_EQ(readFile(target), image);  // left as it was
    }

    // "image/jpg" passes too; the target is not truncated, so a smaller image
    // leaves the tail of the former one.
    MemorySource small(apicFrame("image/jpg", 3, "SMALL"));
    ASSERT_TRUE(Extract_Picture(small, 1, target));
    EXPECT_EQ(readFile(target), "SMALL" + image.mid(5));

    // The MIME type follows the encoding byte: UTF-16 in encoding 1.
    const QByteArray wide = frame("APIC", '\x01' + utf16("image/jpeg", false) + QByteArray(2, '\0') + '\x03'
                                              + utf16("d", true) + QByteArray(2, '\0') + "WIDE");
    MemorySource wideSrc(wide);
    const PictureHead head = Read_Picture_Head(wideSrc, 1);
    EXPECT_TRUE(head.ok);
    EXPECT_EQ(head.mime, "image/jpeg");
    EXPECT_EQ(head.pictureType, 3);
    EXPECT_EQ(head.consumed, 1 + 2 + 20 + 2 + 1);
    const QString other = dir.filePath("other.jpg");
    ASSERT_TRUE(Extract_Picture(wideSrc, 1, other));
    EXPECT_EQ(readFile(other), "WIDE");

    // An image that runs past the end of the file is not extracted.
    QByteArray cut = apicFrame("image/jpeg", 3, "0123456789");
    cut.chop(3);
    MemorySource cutSrc(cut);
    EXPECT_FALSE(Extract_Picture(cutSrc, 1, dir.filePath("cut.jpg")));
    EXPECT_FALSE(QFile::exists(dir.filePath("cut.jpg")));
}
