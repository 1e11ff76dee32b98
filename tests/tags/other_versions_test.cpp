// Tags of versions 2.4 and 2.2: read only when the setting asks for it, and
// written back as v2.3 with nothing of the fields lost.
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "fixtures.h"
#include "tags/other_versions.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QByteArray synchsafe(quint32 n)
{
    const char b[] = {char(n >> 21 & 0x7F), char(n >> 14 & 0x7F), char(n >> 7 & 0x7F), char(n & 0x7F)};
    return QByteArray(b, 4);
}

QByteArray frame24(const char* id, const QByteArray& data, quint8 format = 0)
{
    return QByteArray(id, 4) + synchsafe(quint32(data.size())) + '\0' + char(format) + data;
}

QByteArray unsynchronised(const QByteArray& data)
{
    QByteArray out;
    for (const char c : data) {
        out += c;
        if (quint8(c) == 0xFF)
            out += '\0';
    }
    return out;
}

const QByteArray kImage = "\xFF\xD8\xFF\xE0" + QByteArray("\xFF\x00\xFF\xFB", 4).repeated(40) + "end";

// Artist|Album|Track|Year|Title|Genre|Length|Comment|language, then whether the cover came out whole.
QString fieldsOf(TagState& s)
{
    const Tag2FieldSet& f = s.Tag2_Fields;
    const bool cover = readFile(s.coverPath()) == kImage;
    return QStringList{f.Artist, f.Album, f.Track, f.Year, f.Title, f.Genre, f.Length, f.Comment, s.Comment_Language}
               .join('|')
        + (cover ? " +cover" : "");
}

}  // namespace

TEST(OtherTagVersions, ReadWhenAskedAndWrittenAsV23)
{
    const QByteArray audio = mp3Frame().repeated(4) + kTag1;
    // Characters outside the program's page (the snowman) become "?", as the writer stores them.
    const QString full = "Sigur Rós|Takk|7/11|2005|Sæglópur|(17)|61000|Frábært ?|isl +cover";
    const QByteArray v24Frames = frame24("TPE1", "\x03" "Sigur R\xC3\xB3s") + frame24("TALB", '\x01' + utf16("Takk", false))
        + frame24("TRCK", QByteArray("\x00" "7/11", 5)) + frame24("TDRC", "\x03" "2005-09-12T10:30")
        + frame24("TIT2", "\x02" + QByteArray("\0S\0\xE6\0g\0l\0\xF3\0p\0u\0r", 16)) + frame24("TCON", "\x03" "17")
        + frame24("TLEN", QByteArray("\x00" "61000", 6))
        + frame24("COMM", "\x03" "isl" + QByteArray("\0", 1) + "Fr\xC3\xA1" "b\xC3\xA6rt \xE2\x98\x83")
        + frame24("TXXX", QByteArray("\x03" "gain\0-6 dB", 11)) + frame24("RVA2", "skipped")
        // A picture with a data length indicator, unsynchronised.
        + frame24("APIC", synchsafe(quint32(kImage.size() + 22)) + unsynchronised(QByteArray("\x03" "image/jpeg\0\x03" "Forsi\xC3\xB0" "a\0", 20 + 2) + kImage), 0x03);
    const QByteArray longTitle(299, 't');
    // Plain sizes where synchsafe ones belong, as some writers store them: 300 reads as 172 synchsafe.
    const QByteArray plainSizes = QByteArray("TIT2", 4) + be32(300) + QByteArray(2, '\0') + '\0' + longTitle
        + QByteArray("TPE1", 4) + be32(4) + QByteArray(2, '\0') + QByteArray("\0Abc", 4);
    const QByteArray v22 = frame22("TP1", QByteArray("\0Sigur R\xF3s", 10)) + frame22("TAL", '\x01' + utf16("Takk", true))
        + frame22("TRK", QByteArray("\0" "7/11", 5)) + frame22("TYE", QByteArray("\0" "2005", 5))
        + frame22("TT2", QByteArray("\0S\xE6gl\xF3pur", 9)) + frame22("TCO", QByteArray("\0(17)", 5))
        + frame22("TLE", QByteArray("\0" "61000", 6)) + frame22("COM", '\x01' + QByteArray("isl", 3) + utf16("", false) + QByteArray(2, '\0') + utf16("Frábært ☃", false))
        + frame22("TXX", QByteArray("\0gain\0-6 dB", 11)) + frame22("XYZ", "unknown")
        + frame22("PIC", QByteArray("\0JPG\x03" "front\0", 11) + kImage);
    const std::tuple<const char*, QByteArray, QString> rows[] = {
        {"v2.4: UTF-8, UTF-16, synchsafe sizes, unsynchronised picture", tag(v24Frames + QByteArray(50, '\0'), 4), full},
        {"v2.4 behind an extended header, with a footer", tag(synchsafe(6) + QByteArray(2, '\0') + v24Frames, 4, 0x50)
             + "3DI" + QByteArray(7, '\0'), full},
        {"v2.4 with plain sizes", tag(plainSizes, 4), "Abc||||" + longTitle + "||||"},
        {"v2.2: three-letter names", tag(v22, 2), full},
        {"v2.2 unsynchronised as a whole", tag(unsynchronised(v22), 2, char(0x80)), full},
    };
    for (const auto& [name, head, expected] : rows) {
        SCOPED_TRACE(name);
        TempEnv env;
        const QString in = env.path("in.mp3"), out = env.path("out.mp3");
        writeFile(in, head + audio);
        TagState off(env.path("")), on(env.path(""));
        on.Read_Other_Versions = true;
        Read_Tag2(off, in, Tag2Mode::Panel);
        EXPECT_FALSE(off.Tag2_Present);  // off, the tag is no tag at all
        EXPECT_EQ(fieldsOf(off), "||||||||");
        Read_Tag2(on, in, Tag2Mode::Panel);
        EXPECT_EQ(fieldsOf(on), expected);
        // The next write makes the program's v2.3 tag of it; the audio follows unchanged.
        ASSERT_TRUE(Write_Tag2_Panel(on, defaultTagOptions(), in, out));
        const QByteArray written = readFile(out);
        EXPECT_TRUE(written.startsWith("ID3\x03"));
        EXPECT_TRUE(written.endsWith(audio));
        TagState back(env.path(""));
        Read_Tag2(back, out, Tag2Mode::Panel);
        EXPECT_EQ(fieldsOf(back), fieldsOf(on));
        if (QString(expected) == full) {
            EXPECT_TRUE(frameIds(written).endsWith("TXXX APIC:3")) << frameIds(written).toStdString();
        }
    }
}
