// The ID3v2.3 writers: their own frames, the old frames kept, the round trip, mutagen's view.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <functional>

#include "fixtures.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
// Frames a foreign tagger leaves, two with flags the program must not touch.
const QByteArray kTxxx = frame("TXXX", QByteArray("\0gain\0-6 dB", 11), 0x0040);
const QByteArray kPriv = frame("PRIV", QByteArray("owner\0\x01\xFE", 8));
const QByteArray kUslt = frame("USLT", QByteArray("\0eng\0la la", 10));
const QByteArray kGeob = frame("GEOB", QByteArray("\0x/y\0f\0\0\x01", 10), 0x0080);
const QByteArray kSylt = frame("SYLT", QByteArray("\0eng\x02\x01\0\nla\0\0\0\0\x10", 16));
const QByteArray kFront = apicFrame("image/jpeg", 3, "FRONT");
const QByteArray kOther = apicFrame("image/jpeg", 0, "OTHER");
const QByteArray kBack = apicFrame("image/png", 4, "BACK");
const QByteArray kAudio = mp3Frame().repeated(3) + kTag1;
}  // namespace

TEST(Tag2Writer, OwnFramesExactToTheByte)
{
    TagState s;
    s.Tag2_Fields = {"Abba", "Arrival", "03", "1976", "Dancing Queen", "Various Artists", "", "230000", "Pop",
                     "", "", "8800", "Great"};
    std::tie(s.Comment_Text_Read, s.Comment_Language, s.Comment_Description) = std::make_tuple("old", "deu", "note");
    const QByteArray old = tag(textFrame("TPE1", "Old") + kTxxx + kPriv + kUslt + kGeob + kBack
                               + commFrame("deu", "note", "old") + commFrame("eng", "", "2nd") + kSylt
                               + textFrame("TIT2", "Old title") + QByteArray(64, '\0'));
    // Own frames in order, a changed comment as "eng", kept frames in their order; no padding, no junk.
    EXPECT_EQ(written(Tag2Writer::Panel, s, defaultTagOptions(), old + QByteArray(300, 'j') + kAudio),
              tag(textFrame("TPE1", "Abba") + textFrame("TALB", "Arrival") + textFrame("TRCK", "03")
                  + textFrame("TYER", "1976") + textFrame("TIT2", "Dancing Queen")
                  + textFrame("TPE2", "Various Artists") + textFrame("TLEN", "230000") + textFrame("TCON", "Pop")
                  + textFrame("TFRM", "8800") + commFrame("eng", "", "Great") + kTxxx + kPriv + kUslt + kGeob + kBack)
                  + kAudio);
    EXPECT_EQ(s.Comment_Language, "eng");

    // Each writer's fields and order. An untouched comment keeps language (padded to three bytes)
    // and description, the retag always writes "eng"; text is single-byte.
    std::tie(s.Comment_Text_Read, s.Comment_Language) = std::make_tuple("Great", "fra");
    s.Tag2_Quick_Fields = s.Tag2_Fields;
    s.Tag2_Quick_Fields.Artist = "Quick";
    s.Tag2_Fields.Artist = "Motörhead € 日";
    FtTag2Fields& ft = s.FT_Tag2_Fields;
    std::tie(ft.Artist, ft.Album, ft.Title, ft.Track, ft.Year, ft.VA, ft.Length, ft.Genre, ft.Frames, ft.Comment,
             ft.Comment_Read, ft.Comment_Language) =
        std::make_tuple("Filename", "A", "T", "03", "1976", "VA", "230000", "Pop", "8800", "Great", "Great", "fr");
    const std::tuple<Tag2Writer, const char*, QByteArray, QByteArray> rows[] = {
        {Tag2Writer::Panel, "TPE1 TALB TRCK TYER TIT2", "Mot\xF6rhead \x80 ?", commFrame("fra", "note", "Great")},
        {Tag2Writer::Filename, "TPE1 TALB TIT2 TRCK TYER", "Filename", commFrame("fr ", "", "Great")},
        {Tag2Writer::Quick, "TPE1 TALB TRCK TYER TIT2", "Quick", commFrame("eng", "", "Great")},
    };
    for (const auto& [writer, ids, artist, comment] : rows) {
        const QByteArray out = written(writer, s, defaultTagOptions(), tag(commFrame("fra", "d", "Great")) + kAudio);
        EXPECT_EQ(frameIds(out), ids + QString(" TPE2 TLEN TCON TFRM COMM"));
        EXPECT_TRUE(out.mid(10).startsWith(textFrame("TPE1", artist))) << ids;
        EXPECT_TRUE(out.endsWith(comment + kAudio)) << ids;
    }
    // Options 3, 4, 6, 7, 9 and 10 leave their frames out; an empty field writes none, old or new.
    TagOptions few = defaultTagOptions();
    for (int off : {3, 4, 6, 7, 9, 10})
        few[off] = false;
    s.Tag2_Fields.Album.clear();
    EXPECT_EQ(frameIds(written(Tag2Writer::Panel, s, few, tag(textFrame("TALB", "x")) + kAudio)), "TPE1 TIT2 TCON");
}

TEST(Tag2Writer, WhichOldFramesSurvive)
{
    TempEnv env;
    const QString jpeg = env.path("new.jpg");
    const QByteArray image = "\xFF\xD8" + QByteArray(200000, 'i');  // the tag size needs three of its bytes
    writeFile(jpeg, image);
    const QByteArray pictures = tag(kFront + kOther + kBack);
    const QByteArray mixed = tag(kTxxx + kFront + kSylt + kUslt + frame("TSSE", QByteArray("\0LAME", 5)));
    const auto off = [](int o) { return [o](TagState&, TagOptions& opt) { opt[o] = !opt[o]; }; };
    const auto cover = [](int choice, QString path, QString panel = {}) {  // filename tagger's choice, panel's file
        return [=](TagState& s, TagOptions&) {
            s.FT_Tag2_Fields.FT_Cover_Choice = choice, s.FT_Tag2_Fields.FT_Cover_Paths[2] = path;
            s.Cover_Changed = !panel.isEmpty(), s.Tag2_Fields.Cover_File = panel;
        };
    };
    const auto none = [](TagState&, TagOptions&) {};
    // Front covers as other taggers store them: a UTF-16 description behind a single-byte MIME type.
    const auto front16 = [](const QByteArray& description) {
        return frame("APIC", QByteArray("\x01" "image/jpeg\0\x03", 13) + description + "FRONT16");
    };
    const Tag2Writer P = Tag2Writer::Panel, F = Tag2Writer::Filename, Q = Tag2Writer::Quick;
    using Setup = std::function<void(TagState&, TagOptions&)>;
    const std::tuple<const char*, Tag2Writer, QByteArray, Setup, const char*> rows[] = {
        {"foreign frames stay, SYLT goes", P, mixed, none, "TIT2 TXXX APIC:3 USLT TSSE"},
        {"the filename tagger keeps SYLT", F, mixed, none, "TIT2 TXXX APIC:3 SYLT USLT TSSE"},
        {"unless option 13 is off", F, mixed, off(13), "TIT2 TXXX APIC:3 USLT TSSE"},
        {"option 12 drops all but pictures", Q, mixed, off(12), "TIT2 APIC:3"},
        {"option 11 drops other pictures", P, pictures, off(11), "TIT2 APIC:3"},
        {"option 8 off drops the front cover", Q, pictures, off(8), "TIT2 APIC:0 APIC:4"},
        {"a new cover replaces the old front", P, pictures, cover(1, {}, jpeg), "TIT2 APIC:3 APIC:0 APIC:4"},
        {"filename: cover removed", F, pictures, cover(0, {}), "TIT2 APIC:0 APIC:4"},
        {"a new cover replaces a front described in UTF-16", P, tag(front16(utf16("Vorderseite", false) + QByteArray(2, '\0')) + kOther),
         cover(1, {}, jpeg), "TIT2 APIC:3 APIC:0"},
        {"a new cover replaces one described beyond the page", P, tag(front16(utf16("封面", true) + QByteArray(2, '\0')) + kBack),
         cover(1, {}, jpeg), "TIT2 APIC:3 APIC:4"},
        {"filename: removed, an empty UTF-16 description", F, tag(front16(QByteArray(2, '\0')) + kBack), cover(0, {}),
         "TIT2 APIC:4"},
        {"filename: new cover", F, pictures, cover(2, jpeg), "TIT2 APIC:3 APIC:0 APIC:4"},
        {"filename: a chosen file that is gone", F, pictures, cover(2, env.path("gone.jpg")), "TIT2 APIC:0 APIC:4"},
        {"a MIME type past its frame: no type", F,
         tag(frame("APIC", QByteArray("\0image/jpeg", 11)) + QByteArray("\0\x03\0\0\0\0\0\0", 8)), cover(0, {}),
         "TIT2 APIC:?"},
        {"a name outside the table ends the walk", P, tag(kTxxx + frame("XYZ1", "d") + kPriv), none, "TIT2 TXXX"},
        {"so does lower case outside T and W", P, tag(kTxxx + frame("abcd", "d") + kPriv), none, "TIT2 TXXX"},
        {"upper-case T and W frames pass", P, tag(frame("TZZ9", "x") + frame("WZZZ", "y")), none, "TIT2 TZZ9 WZZZ"},
        {"a foreign T frame in lower case fails", P, tag(kTxxx + frame("TxXX", "d")), none, "failed"},
        {"a W frame too, in the page's letters", F, tag(frame("W\xE9XX", "d")), none, "failed"},
        {"a kept frame longer than the file", P, tag(kPriv + QByteArray("TXXX\0\0\x13\x88\0\0", 10)), none, "failed"},
        {"a chosen cover that cannot be read", P, pictures, cover(1, {}, env.path("no.jpg")), "failed"},
    };
    for (const auto& [name, writer, old, setup, expected] : rows) {
        TagState s;
        s.Tag2_Fields.Title = s.FT_Tag2_Fields.Title = s.Tag2_Quick_Fields.Title = "t";
        s.FT_Tag2_Fields.FT_Cover_Choice = 1;
        TagOptions o = defaultTagOptions();
        setup(s, o);
        const QByteArray out = written(writer, s, o, old + kAudio);
        EXPECT_EQ(out == "failed" ? "failed" : frameIds(out), QString(expected)) << name;
        // Kept frames come through byte for byte, a new cover right behind the program's own.
        const qsizetype fresh = out.indexOf(apicFrame("image/jpeg", 3, image));
        EXPECT_EQ(fresh, QByteArray(name).contains("new cover") ? 10 + textFrame("TIT2", "t").size() : -1) << name;
        const std::pair<const char*, QByteArray> kept[] = {
            {"TXXX", kTxxx}, {"USLT", kUslt}, {"SYLT", kSylt}, {"APIC:0", kOther}, {"APIC:4", kBack}};
        for (const auto& [id, bytes] : kept)
            EXPECT_EQ(frameIds(out).contains(id), out.contains(bytes)) << name << " " << id;
        EXPECT_EQ(out.contains(kFront), frameIds(out).contains("APIC:3") && fresh < 0) << name;
    }
    TagState s;  // no audio, no write
    EXPECT_EQ(written(P, s, defaultTagOptions(), tag(kTxxx) + QByteArray(5000, 'x')), "failed");
}

TEST(Tag2Writer, RoundTripOnEveryKindOfFile)
{
    const QByteArray cover = "\xFF\xD8\xFF\xE0" + QByteArray(5000, 'k');
    const auto fields = [](const TagState& s) {
        const Tag2FieldSet& f = s.Tag2_Fields;
        return QStringList{f.Artist, f.Album, f.Track, f.Year, f.Title, f.VA, f.Genre, f.Length, f.Frames, f.Comment,
                           s.Comment_Language, s.Comment_Description};
    };
    // Constant and variable rate, mono, 22 kHz, and no Info header.
    for (const QByteArray& audio : {makeMp3(), makeMp3({1, 44100, 2, 256, true}), makeMp3({1, 44100, 1, 64}),
                                    makeMp3({1, 22050, 2, 48}), makeMp3({1, 44100, 2, 128, false, 4, false})}) {
        TempEnv env;
        const QString source = env.path("in.mp3"), target = env.path("out.mp3"), again = env.path("again.mp3");
        // A cover, an untouched comment, a foreign frame, padding; junk before the audio, v1 after.
        const QByteArray kept = apicFrame("image/jpeg", 3, cover) + textFrame("TSRC", "GB");
        writeFile(source, tag(textFrame("TPE1", "Old") + commFrame("deu", "Notiz", "Gut") + kept + QByteArray(99, '\0'))
                              + QByteArray(77, 'j') + audio + kTag1);
        TagState s(env.path("")), back(env.path(""));
        Read_Tag2(s, source, Tag2Mode::Panel);
        s.Tag2_Fields = {"Sigur Rós", "Takk", "07", "2005", "Sæglópur", "Various Artists", "", "61000", "Post-Rock",
                         "", "", "2297", "Gut"};
        ASSERT_TRUE(Write_Tag2_Panel(s, defaultTagOptions(), source, target));
        Read_Tag2(back, target, Tag2Mode::Panel);
        EXPECT_EQ(fields(back), fields(s));
        EXPECT_EQ(fields(back).mid(9), QStringList({"Gut", "deu", "Notiz"}));
        EXPECT_EQ(readFile(back.coverPath()), cover);
        EXPECT_TRUE(readFile(target).endsWith(kept + audio + kTag1));
        // Writing what was read back changes nothing.
        ASSERT_TRUE(Write_Tag2_Panel(back, defaultTagOptions(), target, again));
        EXPECT_EQ(readFile(again), readFile(target));
    }
}

// Mutagen, the ID3 library Debian ships, makes foreign frames that must come
// through a write untouched, and must read right what the writer made.
TEST(Tag2Writer, MutagenReadsWhatTheWriterMadeAndItsOwnFramesSurvive)
{
    const char* script = R"PY(
import sys, json
from mutagen.id3 import ID3, TXXX, PRIV, APIC, POPM, TPE1, COMM
if sys.argv[1] == "make":
    t = ID3()
    for f in [TPE1(encoding=1, text=["Wrong artist"]), COMM(encoding=1, lang="deu", desc="", text="alt"),
              TXXX(encoding=1, desc="gain", text=["-6 dB"]), POPM(email="me@x.org", rating=196), PRIV(owner="WM"),
              APIC(encoding=0, mime="image/jpeg", type=3, data=b"OLD"), APIC(mime="image/png", type=4, desc="back")]:
        t.add(f)
    t.save(sys.argv[2], v2_version=3)
elif sys.argv[1] == "dump":
    t = ID3(sys.argv[2], translate=False)
    print(json.dumps({"frames": {k: repr(f) for k, f in t.items()}, "cover": t["APIC:"].data.hex()}))
)PY";
    const auto mutagen = [&](const QString& command, const QString& path) {
        QProcess p;
        p.start("/usr/bin/python3", {"-c", script, command, path});
        const bool ok = p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
        return ok ? QJsonDocument::fromJson(p.readAllStandardOutput()).object()
                  : QJsonObject{{"error", QString(p.readAllStandardError())}};
    };
    if (mutagen("probe", {}).contains("error"))
        GTEST_SKIP() << "Debian's python3-mutagen is not installed";
    TempEnv env;
    const QString path = env.path("track.mp3"), out = env.path("out.mp3"), jpeg = env.path("cover.jpg");
    ASSERT_TRUE(writeMp3(path, {2, 44100, 2, 160, true}));
    ASSERT_EQ(mutagen("make", path)["error"].toString(), "");
    const QByteArray image = "\xFF\xD8\xFF\xE0" + QByteArray(30000, 'c');
    writeFile(jpeg, image);
    TagState s(env.path(""));
    Read_Tag2(s, path, Tag2Mode::Panel);
    ASSERT_EQ(s.Tag2_Fields.Artist, "Wrong artist");
    // Latin-1 only: the program's page puts other characters (the euro sign,
    // curly quotes) at 0x80 to 0x9F, where other taggers see control codes.
    s.Tag2_Fields = {"Björk", "Homogenic", "03", "1997", "Jóga", "", "", "2000", "Electronic", jpeg, "", "77", "schön"};
    s.Cover_Changed = true;
    ASSERT_TRUE(Write_Tag2_Panel(s, defaultTagOptions(), path, out));

    const QJsonObject after = mutagen("dump", out), frames = after["frames"].toObject();
    const QString latin1 = "(encoding=<Encoding.LATIN1: 0>, ";
    EXPECT_EQ(frames["TPE1"].toString(), "TPE1" + latin1 + "text=['Björk'])");
    EXPECT_EQ(frames["COMM::eng"].toString(), "COMM" + latin1 + "lang='eng', desc='', text=['schön'])");
    EXPECT_EQ(after["cover"].toString(), QString(image.toHex()));
    // The new front cover took the old one's place; every foreign frame reads as mutagen wrote it.
    QJsonObject foreign = mutagen("dump", path)["frames"].toObject();
    for (const char* replaced : {"TPE1", "COMM::deu", "APIC:"})
        foreign.remove(replaced);
    ASSERT_EQ(foreign.size(), 4);
    for (auto it = foreign.begin(); it != foreign.end(); ++it)
        EXPECT_EQ(frames[it.key()], it.value()) << it.key().toStdString();
    EXPECT_EQ(frames.size(), 9 + 4);  // the program's own, the cover among them, and the foreign
}
