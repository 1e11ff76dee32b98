// The ID3v2.3 writers, bytes in and bytes out: what each writes of its own,
// which old frames survive, and when a write gives up.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <functional>
#include <tuple>

#include "tests/support/temp_env.h"
#include "writer_fixtures.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
void fillAll(TagState& s)
{
    s.Tag2_Fields = {"Abba", "Arrival", "03", "1976", "Dancing Queen", "Various Artists", "", "230000", "Pop",
                     "", "", "8800", "Great"};
    s.Comment_Text_Read = "old";
    s.Comment_Language = "deu";
    s.Comment_Description = "note";
    s.Tag2_Quick_Fields = s.Tag2_Fields;
    FtTag2Fields& ft = s.FT_Tag2_Fields;
    std::tie(ft.Artist, ft.Album, ft.Title, ft.Track, ft.Year, ft.VA, ft.Length, ft.Genre, ft.Frames, ft.Comment) =
        std::make_tuple("Abba", "Arrival", "Dancing Queen", "03", "1976", "Various Artists", "230000", "Pop", "8800",
                        "Great");
    ft.FT_Cover_Choice = 1;
}

// Frames a foreign tagger leaves, two with flags the program must not touch.
const QByteArray kTxxx = frame("TXXX", QByteArray("\0gain\0-6 dB", 11), 0x0040);
const QByteArray kPriv = frame("PRIV", QByteArray("owner\0\x01\xFE", 8));
const QByteArray kUslt = frame("USLT", QByteArray("\0eng\0la la", 10));
const QByteArray kGeob = frame("GEOB", QByteArray("\0x/y\0f\0\0\x01", 10), 0x0080);
const QByteArray kSylt = frame("SYLT", QByteArray("\0eng\x02\x01\0\nla\0\0\0\0\x10", 16));
const QByteArray kFront = apicFrame("image/jpeg", 3, "FRONT");
const QByteArray kOther = apicFrame("image/jpeg", 0, "OTHER");
const QByteArray kBack = apicFrame("image/png", 4, "BACK");
}  // namespace

TEST(Tag2Writer, PanelWriteIsExactToTheByte)
{
    TagState s;
    fillAll(s);
    const QByteArray old = tag(textFrame("TPE1", "Old") + kTxxx + kPriv + kUslt + kGeob + kBack
                               + commFrame("deu", "note", "old") + commFrame("eng", "", "2nd") + kSylt
                               + textFrame("TIT2", "Old title") + QByteArray(64, '\0'));
    // Own frames in the panel's order, the changed comment as "eng" without
    // description, the kept frames in their old order; no padding, no junk;
    // the audio with its ID3v1 tag.
    EXPECT_EQ(writeInMemory(Tag2Writer::Panel, s, defaultTagOptions(), old + QByteArray(300, 'j') + audioWithTag1()),
              tag(textFrame("TPE1", "Abba") + textFrame("TALB", "Arrival") + textFrame("TRCK", "03")
                  + textFrame("TYER", "1976") + textFrame("TIT2", "Dancing Queen")
                  + textFrame("TPE2", "Various Artists") + textFrame("TLEN", "230000") + textFrame("TCON", "Pop")
                  + textFrame("TFRM", "8800") + commFrame("eng", "", "Great") + kTxxx + kPriv + kUslt + kGeob + kBack)
                  + audioWithTag1());
    EXPECT_EQ(s.Comment_Language, "eng");

    // The other writers' orders; an untouched comment keeps language and
    // description, the retag always writes "eng"; text is single-byte.
    s.Comment_Text_Read = s.FT_Tag2_Fields.Comment_Read = "Great";
    s.Comment_Language = "fra";
    s.FT_Tag2_Fields.Comment_Language = "fr";  // cut short in the file: padded to three bytes
    s.Tag2_Fields.Artist = QString::fromUtf8("Motörhead € 日");
    const QByteArray in = tag(commFrame("fra", "d", "Great")) + audioWithTag1();
    const QByteArray panel = writeInMemory(Tag2Writer::Panel, s, defaultTagOptions(), in);
    EXPECT_EQ(frameIds(panel), "TPE1 TALB TRCK TYER TIT2 TPE2 TLEN TCON TFRM COMM");
    EXPECT_TRUE(panel.contains(commFrame("fra", "note", "Great") + audioWithTag1()));
    EXPECT_TRUE(panel.contains(textFrame("TPE1", "Mot\xF6rhead \x80 ?")));
    const QByteArray filename = writeInMemory(Tag2Writer::Filename, s, defaultTagOptions(), in);
    EXPECT_EQ(frameIds(filename), "TPE1 TALB TIT2 TRCK TYER TPE2 TLEN TCON TFRM COMM");
    EXPECT_TRUE(filename.contains(commFrame("fr ", "", "Great")));
    EXPECT_TRUE(writeInMemory(Tag2Writer::Quick, s, defaultTagOptions(), in).contains(commFrame("eng", "", "Great")));
    // Options 3, 4, 6, 7, 9 and 10 leave their frames out; an empty field
    // writes none and the old frame of that name is gone all the same.
    TagOptions few = defaultTagOptions();
    for (int off : {3, 4, 6, 7, 9, 10})
        few[off] = false;
    s.Tag2_Fields.Album.clear();
    EXPECT_EQ(frameIds(writeInMemory(Tag2Writer::Panel, s, few, tag(textFrame("TALB", "x")) + audioWithTag1())),
              "TPE1 TIT2 TCON");
}

TEST(Tag2Writer, WhichOldFramesSurvive)
{
    QTemporaryDir dir;
    const QString jpeg = dir.filePath("new.jpg");
    // Large enough that the tag size needs three of its seven-bit bytes.
    const QByteArray image = "\xFF\xD8" + QByteArray(200000, 'i');
    writeFile(jpeg, image);
    const QByteArray pictures = tag(kFront + kOther + kBack);
    const QByteArray mixed = tag(kTxxx + kFront + kSylt + kUslt + frame("TSSE", QByteArray("\0LAME", 5)));
    enum : int { Panel, Filename, Quick };
    struct Row {
        const char* name;
        int writer;
        QByteArray old;
        std::function<void(TagState&, TagOptions&)> setup;
        const char* expected;  // frame names, or "failed"
        bool withAudio = true;
    };
    const auto none = [](TagState&, TagOptions&) {};
    const auto off = [](int o) { return [o](TagState&, TagOptions& opt) { opt[o] = !opt[o]; }; };
    const auto choice = [](int c, QString p = {}) {
        return [c, p](TagState& s, TagOptions&) {
            s.FT_Tag2_Fields.FT_Cover_Choice = c;
            s.FT_Tag2_Fields.FT_Cover_Paths[2] = p;
        };
    };
    const Row rows[] = {
        {"all foreign frames stay, SYLT goes", Panel, mixed, none, "TIT2 TXXX APIC:3 USLT TSSE"},
        {"the filename tagger keeps SYLT", Filename, mixed, none, "TIT2 TXXX APIC:3 SYLT USLT TSSE"},
        {"unless option 13 is off", Filename, mixed, off(13), "TIT2 TXXX APIC:3 USLT TSSE"},
        {"option 12 drops all but pictures", Quick, mixed, off(12), "TIT2 APIC:3"},
        {"option 11 drops other pictures", Panel, pictures, off(11), "TIT2 APIC:3"},
        {"option 8 off drops the front cover", Quick, pictures, off(8), "TIT2 APIC:0 APIC:4"},
        {"a new cover replaces the old front", Panel, pictures,
         [&](TagState& s, TagOptions&) { s.Cover_Changed = true, s.Tag2_Fields.Cover_File = jpeg; },
         "TIT2 APIC:3 APIC:0 APIC:4"},
        {"filename: cover removed", Filename, pictures, choice(0), "TIT2 APIC:0 APIC:4"},
        {"filename: new cover", Filename, pictures, choice(2, jpeg), "TIT2 APIC:3 APIC:0 APIC:4"},
        {"filename: a chosen file that is gone removes", Filename, pictures, choice(2, dir.filePath("gone.jpg")),
         "TIT2 APIC:0 APIC:4"},
        {"a MIME type running past its frame reads no type from the padding", Filename,
         tag(frame("APIC", QByteArray("\0image/jpeg", 11)) + QByteArray("\0\x03\0\0\0\0\0\0", 8)), choice(0),
         "TIT2 APIC:?"},
        {"a name outside the table ends the walk", Panel, tag(kTxxx + frame("XYZ1", "d") + kPriv), none, "TIT2 TXXX"},
        {"so does lower case outside T and W", Panel, tag(kTxxx + frame("abcd", "d") + kPriv), none, "TIT2 TXXX"},
        {"foreign upper-case T and W frames pass", Panel, tag(frame("TZZ9", "x") + frame("WZZZ", "y")), none,
         "TIT2 TZZ9 WZZZ"},
        {"a foreign T frame with lower case fails", Panel, tag(kTxxx + frame("TxXX", "d")), none, "failed"},
        {"a W frame too, in the page's letters", Filename, tag(frame("W\xE9XX", "d")), none, "failed"},
        {"a kept frame longer than the file fails", Panel, tag(kPriv + QByteArray("TXXX\0\0\x13\x88\0\0", 10)), none,
         "failed"},
        {"a v2.4 tag keeps nothing", Panel, tag(kTxxx, 4), none, "TIT2"},
        {"frames behind an extended header with CRC", Panel,
         tag(QByteArray("\0\0\0\x0A\x80\0\0\0\0\0\0\0\0\0", 14) + kTxxx, 3, '\x40'), none, "TIT2 TXXX"},
        {"a chosen cover that cannot be read fails", Panel, pictures,
         [&](TagState& s, TagOptions&) { s.Cover_Changed = true, s.Tag2_Fields.Cover_File = dir.filePath("no.jpg"); },
         "failed"},
        {"no audio, no write", Panel, tag(kTxxx) + QByteArray(5000, 'x'), none, "failed", false},
    };
    for (const Row& r : rows) {
        TagState s;
        s.Tag2_Fields.Title = s.FT_Tag2_Fields.Title = s.Tag2_Quick_Fields.Title = "t";
        s.FT_Tag2_Fields.FT_Cover_Choice = 1;
        TagOptions o = defaultTagOptions();
        r.setup(s, o);
        const QByteArray out = writeInMemory(Tag2Writer(r.writer), s, o, r.old + (r.withAudio ? audioWithTag1() : ""));
        EXPECT_EQ(out == "failed" ? "failed" : frameIds(out), QString(r.expected)) << r.name;
        // Kept frames come through byte for byte, a new cover right behind
        // the program's own frames.
        const bool fresh = out.contains(apicFrame("image/jpeg", 3, image));
        EXPECT_EQ(fresh, QByteArray(r.name).contains("new cover")) << r.name;
        EXPECT_TRUE(!fresh || out.indexOf(apicFrame("image/jpeg", 3, image)) == 10 + textFrame("TIT2", "t").size());
        const std::pair<const char*, QByteArray> kept[] = {
            {"TXXX", kTxxx}, {"USLT", kUslt}, {"SYLT", kSylt}, {"APIC:0", kOther}, {"APIC:4", kBack}};
        for (const auto& [id, bytes] : kept)
            EXPECT_EQ(frameIds(out).contains(id), out.contains(bytes)) << r.name << " " << id;
        EXPECT_EQ(out.contains(kFront), frameIds(out).contains("APIC:3") && !fresh) << r.name;
    }
}
