// Quick Retag over real files: what it rewrites, what it keeps, the tags it
// leaves alone and how the library follows.
#include <gtest/gtest.h>

#include <QFile>

#include "library/trackfile.h"
#include "shell/file_stamp.h"
#include "tagedit/retag.h"
#include "tagedit/track_follow.h"
#include "tagedit_fixture.h"
#include "tests/support/tag_bytes.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

// A v2.2 tag, which the options a new user has do not read.
const QByteArray kV22 = tag(frame22("TP1", QByteArray("\0Two", 4)) + frame22("TT2", QByteArray("\0Older", 6)), 2);
const QByteArray kSylt = frame("SYLT", QByteArray("\0eng\x02\x01\0\nla\0\0\0\0\x10", 16));

using RetagFixture = TagEditFixture;

QByteArray tagOf(const QByteArray& file)
{
    const QByteArray h = file.left(10);
    const int size = (h[6] << 21) | (h[7] << 14) | (h[8] << 7) | h[9];
    return file.left(10 + size);
}

}  // namespace

TEST(Retag, AllRewritesReadableTagsAndLeavesTheOthersByteForByte)
{
    RetagFixture f;
    const QString plain = f.put("Art/Alb/01 - Plain.mp3",
                                tag(textFrame("TPE1", "Art") + textFrame("TALB", "Alb") + textFrame("TRCK", "1")
                                    + textFrame("TIT2", "Plain") + commFrame("deu", "note", "Keep me") + kSylt
                                    + QByteArray(200, '\0')));
    const QString various = f.put("Various/Mix/02 - Va.mp3",
                                  tag(textFrame("TPE1", "Some") + textFrame("TALB", "Mix") + textFrame("TIT2", "Va")
                                      + textFrame("TPE2", "Various Artists")));
    const QString v24 = f.put("Odd/v24.mp3", tag(textFrame("TPE1", "Four") + textFrame("TIT2", "Newer"), 4));
    const QString v22 = f.put("Odd/v22.mp3", kV22);
    // A header with its version byte gone.
    const QString damaged = f.put("Odd/damaged.mp3", tag(textFrame("TIT2", "Lost"), 0));
    f.fill();
    ASSERT_EQ(f.lib.MP3_List.count(), 5);
    std::map<QString, FileState> before;
    for (const QString& p : {v24, v22, damaged})
        before[p] = stateOf(p);

    mnu_Retag_All(f.edit);

    for (const QString& p : {v24, v22, damaged})
        EXPECT_EQ(stateOf(p), before[p]) << p.toStdString();
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0].text, "3 tracks were left as they were: their tag could not be read");
    EXPECT_EQ(f.ui.messages[0].title, "Quick Retag");
    EXPECT_TRUE(f.ui.events.contains("label17:Retagging all Files..."));
    EXPECT_TRUE(f.ui.events.contains("label18:Retagging Track 5"));
    EXPECT_FALSE(f.ui.locked);

    // The comment keeps its text and takes "eng" without its description;
    // SYLT and the padding go.
    const QByteArray plainTag = tagOf(readFile(plain));
    EXPECT_FALSE(plainTag.contains("SYLT"));
    EXPECT_FALSE(plainTag.endsWith(QByteArray(8, '\0')));
    const TagState p = f.readBack(plain);
    EXPECT_EQ(p.Comment_Text_Read, "Keep me");
    EXPECT_EQ(p.Comment_Language, "eng");
    EXPECT_EQ(p.Comment_Description, "");
    EXPECT_EQ(p.Tag2_Fields.Title, "Plain");

    // The various-artists track stays one, in the file and in the library.
    EXPECT_TRUE(tagOf(readFile(various)).contains(textFrame("TPE2", "Various Artists")));
    EXPECT_EQ(f.readBack(various).Tag2_Panel.Tag2_Combo_VA, 1);
    const int vaRow = f.rowOf(various);
    ASSERT_GE(vaRow, 0);
    EXPECT_EQ(f.lib.MP3_List.field(vaRow, ColVA), "Yes");
    EXPECT_EQ(f.lib.MP3_List.field(vaRow, ColTitle), "Va");
    const FileStamp stamp = Read_File_Stamp(various);
    EXPECT_EQ(f.lib.MP3_List.field(vaRow, ColFilelength), stamp.length);
    EXPECT_EQ(f.lib.MP3_List.field(vaRow, ColLastChanged), stamp.changed);
    EXPECT_TRUE(f.recordsMatchList());

    // A header whose size runs past the end of the file; the library never
    // takes such a file in, a retag of the bare file leaves it too.
    const QString beyond = f.put("Odd/beyond.mp3", QByteArray("ID3\x03\0\0\x7f\x7f\x7f\x7f", 10));
    const FileState beyondWas = stateOf(beyond);
    RetagRun run;
    EXPECT_EQ(Retag_File(f.edit, beyond, run), RetagResult::Unreadable);
    EXPECT_EQ(stateOf(beyond), beyondWas);
    EXPECT_EQ(run.unreadable, 1);

    // A second run changes nothing more in a retagged file.
    const QByteArray once = readFile(plain);
    f.ui.messages.clear();
    mnu_Retag_All(f.edit);
    EXPECT_EQ(readFile(plain), once);
    EXPECT_EQ(f.ui.messages.size(), 1u);
}

TEST(Retag, OtherVersionsAreRewrittenWhenTheSettingReadsThem)
{
    RetagFixture f;
    f.app.Tag_Read_Other = true;
    const QString v24 = f.put("Odd/v24.mp3", tag(textFrame("TPE1", "Four") + textFrame("TIT2", "Newer"), 4));
    const QString v22 = f.put("Odd/v22.mp3", kV22);
    f.fill();
    f.lib.MP3_List.setSelection({0, 1}, 0);

    mnu_Retag_Selection(f.edit);

    EXPECT_TRUE(f.ui.messages.empty());
    for (const auto& [path, title] : {std::pair{v24, "Newer"}, std::pair{v22, "Older"}}) {
        EXPECT_EQ(readFile(path).mid(3, 1), QByteArray("\x03", 1)) << path.toStdString();
        EXPECT_EQ(f.readBack(path).Tag2_Fields.Title, title);
        EXPECT_EQ(f.lib.MP3_List.field(f.rowOf(path), ColTitle), title);
    }
}

TEST(Retag, FailuresTellAndLeaveTheFile)
{
    RetagFixture f;
    const QString locked = f.put("A/B/locked.mp3", tag(textFrame("TIT2", "Locked")));
    const QString gone = f.put("A/B/gone.mp3", tag(textFrame("TIT2", "Gone")));
    f.fill();
    QFile::setPermissions(locked, QFile::ReadOwner);
    const FileState was = stateOf(locked);
    QFile::remove(gone);
    f.lib.MP3_List.setSelection({0, 1}, 0);

    const RetagRun run = mnu_Retag_Selection(f.edit);

    EXPECT_EQ(run.failed, 1);
    EXPECT_EQ(stateOf(locked), was);
    ASSERT_EQ(f.ui.titles(), QStringList{"Tag update error"});
    EXPECT_EQ(f.ui.messages[0].text, "An error occured whilst trying updating Tag3v2, changes are discarded");
    EXPECT_TRUE(f.temps().isEmpty());
    EXPECT_TRUE(f.recordsMatchList());
}

TEST(Retag, AlbumNeedsWhatFindsIt)
{
    struct Case {
        const char* name;
        QString artist, album, va;
        QString title, text;
    } cases[] = {
        {"various without album", "X", "", "Yes", "Unknown Album", "No Album known for this Track"},
        {"without artist", "", "Alb", "No", "Unknown Artist and/or Album", "No Artist and/or Album known for this Track"},
        {"without album", "Art", "", "No", "Unknown Artist and/or Album", "No Artist and/or Album known for this Track"},
    };
    for (const Case& c : cases) {
        RetagFixture f;
        f.put("A/B/x.mp3", tag(textFrame("TIT2", "X")));
        f.fill();
        const FileState was = stateOf(f.pathOf(0));
        f.lib.MP3_List.setField(0, ColArtist, c.artist);
        f.lib.MP3_List.setField(0, ColAlbum, c.album);
        f.lib.MP3_List.setField(0, ColVA, c.va);
        f.lib.MP3_List.select(0);
        mnu_Retag_Album(f.edit);
        ASSERT_EQ(f.ui.titles(), QStringList{c.title}) << c.name;
        EXPECT_EQ(f.ui.messages[0].text, c.text) << c.name;
        EXPECT_EQ(stateOf(f.pathOf(0)), was) << c.name;
    }
}

TEST(Retag, TreeRetagsSubfoldersFirstThenRefreshes)
{
    RetagFixture f;
    f.fill();
    const QString top = f.env.path("Out/");
    writeFile(top + "a.mp3", tag(textFrame("TIT2", "A") + QByteArray(100, '\0')) + f.audio);
    writeFile(top + "sub/b.mp3", tag(textFrame("TIT2", "B") + QByteArray(100, '\0')) + f.audio);
    writeFile(top + "sub/notes.mp3", "no audio");
    f.ui.dialogResults = {f.env.path("Out")};

    mnu_Retag_Tree(f.edit);

    // The refresh's own texts follow.
    EXPECT_EQ(f.ui.events.filter("label1").mid(0, 7),
              (QStringList{"label17:Reading Folder: " + top + "sub", "label18:Quick Retagging Track 1 from 2: b.mp3",
                           "label18:Quick Retagging Track 2 from 2: notes.mp3",
                           "label17:Reading Folder: " + f.env.path("Out"),
                           "label18:Quick Retagging Track 1 from 1: a.mp3", "label17:", "label18:"}));
    for (const QString& p : {top + "a.mp3", top + "sub/b.mp3"})
        EXPECT_FALSE(tagOf(readFile(p)).endsWith(QByteArray(8, '\0'))) << p.toStdString();
    EXPECT_EQ(readFile(top + "sub/notes.mp3"), "no audio");
    EXPECT_TRUE(f.ui.titles().contains("Refresh Report"));
}
