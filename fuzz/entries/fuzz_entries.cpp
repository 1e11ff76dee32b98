#include "fuzz/entries/fuzz_entries.h"

#include <QTemporaryDir>

#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tags/mpeg_info.h"
#include "tags/sylt.h"
#include "tags/tag_state.h"

namespace sonorit {

namespace {
// Covers are extracted to a folder of the process's own, so that the walk
// runs with its picture path too.
QString scratchFolder()
{
    static QTemporaryDir dir;
    return dir.isValid() ? dir.path() + QLatin1Char('/') : QString();
}
}  // namespace

void Exercise_Tag_Walk(ByteSource& src)
{
    TagState state(scratchFolder());
    // Once as the Parts' reader, once reading tags of other versions too.
    for (const bool other : {false, true}) {
        state.Read_Other_Versions = other;
        Read_Tag2(state, src, QStringLiteral("fuzz.mp3"), Tag2Mode::Panel);
        Read_Tag2(state, src, QStringLiteral("fuzz.mp3"), Tag2Mode::Import);
        Read_Tag2(state, src, QStringLiteral("fuzz.mp3"), Tag2Mode::Quick);
    }
    Parse_Tag1(src, state.Tag1_Record);
}

void Exercise_Sylt(ByteSource& src)
{
    TagState state;
    Read_Synced_Lyrics(state, src);
    // The input taken as one bare frame as well, so that the parser is
    // reached without a tag around it.
    Parse_SYLT(state.Lyrics, src, 1);
}

void Exercise_Mpeg_Search(ByteSource& src)
{
    TagState state;
    Show_Mpeg_Info(state, src);
    state.Tag2_Panel.Tag2_Text_Time = QStringLiteral("03:25");
    Show_Mpeg_Info(state, src);
    Is_Mpeg1_Layer3(src);
    Seconds_Per_Frame(src);
}

}  // namespace sonorit
