#pragma once
// An open library over real files with the tag state the tag editing commands
// work on, under the options a new user has.
#include "shell/settings_families.h"
#include "tagedit/tag_edit_context.h"
#include "tagedit/track_follow.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tests/library/work_fixture.h"
#include "tests/support/mp3_maker.h"

namespace sonorit::test {

struct TagEditFixture : WorkFixture {
    TagState tags{app.Data_Folder()};
    TagEditContext edit{app, lib, ui, tags};
    QByteArray audio = makeMp3();

    TagEditFixture() { Get_Tag_Settings(app); }

    // A file under the Main Folder: `head` (a tag, or anything) before the audio.
    QString put(const QString& rel, const QByteArray& head)
    {
        writeFile(main + rel, head + audio);
        return main + rel;
    }
    // The row of a file by its whole path (the library's rowOf goes by name).
    int rowOf(const QString& path) const { return Library_Row_Of(lib.MP3_List, path); }
    // Both tags of a file as the panels read them, the cover not extracted.
    TagState readBack(const QString& path) const
    {
        TagState s(app.Data_Folder());
        s.Covers_To_File = false;
        Read_Tag2(s, path, Tag2Mode::Panel);
        Read_Tag1(s, path, const_cast<ScriptedUi&>(ui));
        return s;
    }
};

}  // namespace sonorit::test
