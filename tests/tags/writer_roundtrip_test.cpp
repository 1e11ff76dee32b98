// What the writers write, the reader reads back, on real LAME files of every
// shape; and a read followed by a write is a fixed point.
#include <gtest/gtest.h>

#include <QDir>
#include <tuple>

#include "tags/id3v2_reader.h"
#include "tags/mpeg_info.h"
#include "tags/track_seconds.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"
#include "writer_fixtures.h"

using namespace sonorit;
using namespace sonorit::test;

TEST(Tag2WriterRoundTrip, FieldsCoverAndAudioComeBackOnEveryKindOfFile)
{
    const QByteArray cover = "\xFF\xD8\xFF\xE0" + QByteArray(5000, 'k');
    const QByteArray tag1 = QByteArray("TAG").leftJustified(128, '\0');
    for (const Mp3Spec& spec : {Mp3Spec{}, Mp3Spec{1, 44100, 2, 256, true}, Mp3Spec{1, 44100, 1, 64},
                                Mp3Spec{1, 22050, 2, 48}, Mp3Spec{1, 44100, 2, 128, false, 4, false}}) {
        TempEnv env;
        const QString data = env.path("data/"), source = env.path("in.mp3"), target = env.path("out.mp3");
        QDir().mkpath(data);
        // An old tag with padding, a cover, an untouched comment with a
        // description and a foreign frame; junk before the audio, v1 after.
        writeFile(source, tag(textFrame("TPE1", "Someone") + apicFrame("image/jpeg", 3, cover)
                              + commFrame("deu", "Notiz", "Gut") + textFrame("TSRC", "GBAYE0000001")
                              + QByteArray(500, '\0'))
                              + QByteArray(77, 'j') + makeMp3(spec) + tag1);
        TagState s(data);
        Read_Tag2(s, source, Tag2Mode::Panel);
        Tag2FieldSet& w = s.Tag2_Fields;
        w.Artist = QString::fromUtf8("Sigur Rós");
        std::tie(w.Album, w.Track, w.Year, w.VA, w.Genre) =
            std::make_tuple("Takk", "07", "2005", "Various Artists", "Post-Rock");
        w.Title = QString::fromUtf8("Sæglópur");
        w.Frames = QString::number(Count_Mpeg_Frames(source));
        w.Length = QString::number(Get_Track_Seconds(source, data, nullptr) * 1000 + 1000);
        ASSERT_TRUE(Write_Tag2_Panel(s, defaultTagOptions(), source, target));

        TagState back(data);
        Read_Tag2(back, target, Tag2Mode::Panel);
        const Tag2FieldSet& r = back.Tag2_Fields;
        EXPECT_EQ(QStringList({r.Artist, r.Album, r.Track, r.Year, r.Title, r.VA, r.Genre, r.Length, r.Frames}),
                  QStringList({w.Artist, w.Album, w.Track, w.Year, w.Title, w.VA, w.Genre, w.Length, w.Frames}));
        EXPECT_EQ(QStringList({r.Comment, back.Comment_Language, back.Comment_Description}),
                  QStringList({"Gut", "deu", "Notiz"}));
        EXPECT_EQ(readFile(back.coverPath()), cover);
        EXPECT_EQ(back.Tag2_Padding_Size, 0);

        // The audio is the same to the byte, and so is its analysis.
        FileSource written(target);
        Mpeg_Info info;
        EXPECT_EQ(readFile(target).mid(Find_First_Frame(written, info) - 1), makeMp3(spec) + tag1);
        EXPECT_EQ(Get_Track_Seconds(target, data, nullptr), Get_Track_Seconds(source, data, nullptr));

        // Writing what was read back changes nothing.
        ASSERT_TRUE(Write_Tag2_Panel(back, defaultTagOptions(), target, env.path("again.mp3")));
        EXPECT_EQ(readFile(env.path("again.mp3")), readFile(target));

        // A retag writes its various-artists "Yes", which no longer reads as
        // the flag; a genre number comes back as its name.
        writeFile(source, tag(textFrame("TPE2", "Various Artists") + textFrame("TCON", "(17)")) + makeMp3(spec));
        Read_Tag2(s, source, Tag2Mode::Quick);
        ASSERT_TRUE(Write_Tag2_Quick(s, defaultTagOptions(), source, target));
        Read_Tag2(back, target, Tag2Mode::Panel);
        EXPECT_EQ(back.Tag2_Fields.VA + back.Tag2_Fields.Genre, "YesRock");
        EXPECT_EQ(back.Tag2_Panel.Tag2_Combo_VA, 0);
    }
}
