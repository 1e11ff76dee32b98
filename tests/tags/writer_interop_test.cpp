// Files the writer makes must read right in another tagger: mutagen, the
// ID3 library Debian ships, serves as the outside judge. It also makes the
// foreign frames that must come through a write untouched.
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "tags/id3v2_reader.h"
#include "tags/mpeg_info.h"
#include "tags/tag_swap.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"
#include "writer_fixtures.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

const char* kScript = R"PY(
import sys, json, hashlib
from mutagen.id3 import ID3, TXXX, PRIV, USLT, GEOB, APIC, POPM, TPE1, WXXX, COMM
from mutagen.mp3 import MP3
cmd, path = sys.argv[1], sys.argv[2]
if cmd == "make":
    t = ID3()
    t.add(TPE1(encoding=1, text=["Wrong artist"]))
    t.add(COMM(encoding=1, lang="deu", desc="", text="alt"))
    t.add(TXXX(encoding=1, desc="replaygain_track_gain", text=["-6.20 dB"]))
    t.add(PRIV(owner="WM/MediaClassPrimaryID", data=b"\x01\x02\x03"))
    t.add(USLT(encoding=1, lang="eng", desc="", text="la la la\nla"))
    t.add(GEOB(encoding=0, mime="application/octet-stream", filename="f.bin", desc="blob", data=b"\x00\xff" * 50))
    t.add(APIC(encoding=0, mime="image/png", type=4, desc="back", data=b"PNG" * 10))
    t.add(APIC(encoding=0, mime="image/jpeg", type=3, desc="", data=b"OLDFRONT"))
    t.add(POPM(email="me@example.org", rating=196, count=3))
    t.add(WXXX(encoding=0, desc="", url="http://example.org"))
    t.save(path, v2_version=3)
else:
    t = ID3(path, translate=False)
    out = {"version": list(t.version), "size": t.size,
           "frames": {k: repr(f) for k, f in t.items()},
           "unknown": [bytes(u[:4]).decode("latin-1") for u in t.unknown_frames],
           "pictures": {k: [int(f.type), f.mime, hashlib.sha1(f.data).hexdigest()]
                        for k, f in t.items() if f.FrameID == "APIC"},
           "length": MP3(path).info.length}
    print(json.dumps(out))
)PY";

// The interpreter that has mutagen: the one on the path, or the system's.
QString mutagenPython()
{
    for (const QString& candidate : {QStringLiteral("python3"), QStringLiteral("/usr/bin/python3")}) {
        QProcess p;
        p.start(candidate, {"-c", "import mutagen.id3"});
        if (p.waitForFinished(20000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
            return candidate;
    }
    return {};
}

QJsonObject mutagen(const QString& python, const QString& command, const QString& path)
{
    QProcess p;
    p.start(python, {"-c", kScript, command, path});
    if (!p.waitForFinished(30000) || p.exitCode() != 0) {
        ADD_FAILURE() << "mutagen " << command.toStdString() << ": " << p.readAllStandardError().toStdString();
        return {};
    }
    return QJsonDocument::fromJson(p.readAllStandardOutput()).object();
}

}  // namespace

TEST(Tag2WriterInterop, MutagenReadsWhatTheWriterMadeAndItsOwnFramesSurvive)
{
    const QString python = mutagenPython();
    if (python.isEmpty())
        GTEST_SKIP() << "python3 with mutagen is not installed";
    TempEnv env;
    const QString data = env.path("data/"), path = env.path("track.mp3"), jpeg = env.path("cover.jpg");
    QDir().mkpath(data);
    ASSERT_TRUE(writeMp3(path, {2, 44100, 2, 160, true}));
    mutagen(python, "make", path);
    const QJsonObject before = mutagen(python, "dump", path);
    const QByteArray image = "\xFF\xD8\xFF\xE0" + QByteArray(30000, 'c');
    writeFile(jpeg, image);

    TagState s(data);
    Read_Tag2(s, path, Tag2Mode::Panel);
    ASSERT_EQ(s.Tag2_Fields.Artist, "Wrong artist");
    // Latin-1 only: the program's page puts other characters (the euro sign,
    // curly quotes) at 0x80 to 0x9F, where other taggers see control codes.
    s.Tag2_Fields = {QString::fromUtf8("Björk"), "Homogenic", "03", "1997", QString::fromUtf8("Jóga"), "", "", "2000",
                     "Electronic", jpeg, "", "77", QString::fromUtf8("Neu kommentiert, schön")};
    s.Cover_Changed = true;
    ScriptedUi ui;
    ASSERT_TRUE(Write_Through_Temp(data, path, ui, [&](const QString& src, const QString& target) {
        return Write_Tag2_Panel(s, defaultTagOptions(), src, target);
    }));

    const QJsonObject after = mutagen(python, "dump", path);
    EXPECT_EQ(after["version"].toArray(), QJsonArray({2, 3, 0}));
    // No padding: mutagen's tag ends where the program finds the audio.
    Mpeg_Info info;
    FileSource written(path);
    EXPECT_EQ(after["size"].toInt(), Find_First_Frame(written, info) - 1);
    EXPECT_NEAR(after["length"].toDouble(), before["length"].toDouble(), 1e-9);
    const QJsonObject frames = after["frames"].toObject();
    const QString latin1 = "(encoding=<Encoding.LATIN1: 0>, ";
    EXPECT_EQ(frames["TPE1"].toString(), "TPE1" + latin1 + QString::fromUtf8("text=['Björk'])"));
    EXPECT_EQ(frames["TIT2"].toString(), "TIT2" + latin1 + QString::fromUtf8("text=['Jóga'])"));
    EXPECT_EQ(frames["TCON"].toString(), "TCON" + latin1 + "text=['Electronic'])");
    EXPECT_EQ(frames["TLEN"].toString(), "TLEN" + latin1 + "text=['2000'])");
    EXPECT_EQ(frames["COMM::eng"].toString(),
              "COMM" + latin1 + QString::fromUtf8("lang='eng', desc='', text=['Neu kommentiert, schön'])"));
    EXPECT_EQ(after["unknown"].toArray(), QJsonArray({"TFRM"}));

    // The new front cover took the old one's place; every foreign frame,
    // the back cover among them, reads as mutagen wrote it.
    EXPECT_EQ(after["pictures"].toObject()["APIC:"].toArray(),
              QJsonArray({3, "image/jpeg",
                          QString(QCryptographicHash::hash(image, QCryptographicHash::Sha1).toHex())}));
    QStringList foreign;
    const QJsonObject old = before["frames"].toObject();
    for (auto it = old.begin(); it != old.end(); ++it) {
        if (it.key() != "TPE1" && !it.key().startsWith("COMM") && it.key() != "APIC:") {
            EXPECT_EQ(frames[it.key()], it.value()) << it.key().toStdString();
            foreign << it.key().left(4);
        }
    }
    foreign.sort();
    EXPECT_EQ(foreign.join(' '), "APIC GEOB POPM PRIV TXXX USLT WXXX");
    EXPECT_EQ(frames.size(), 16);  // nine of the program's own, seven foreign
}
