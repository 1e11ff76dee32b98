#pragma once
// The walk over an ID3v2.3 tag that fills the program's fields. Only version
// 2.3 counts; every other version reads as no tag.
#include <QString>

#include "byte_source.h"
#include "tag_state.h"

namespace sonorit {

enum class Tag2Mode {
    Panel = 0,   // the Tag2 panel: Tag2_Fields and Tag2_Panel, cover "Cover.jpg"
    Import = 1,  // import and library work: a few Tag2_Fields, "Cover.jpg"
    Quick = 2,   // quick retag: Tag2_Quick_Fields, cover "QCover.jpg"
};

// `path` is what Cover_File and Cover_Original take when a cover was found.
void Read_Tag2(TagState& state, ByteSource& src, const QString& path, Tag2Mode mode);
void Read_Tag2(TagState& state, const QString& path, Tag2Mode mode);

// The genre rule for a TCON text.
struct GenreChoice {
    QString name;       // what modes 1 and 2 keep; the panel's genre box text
    int entry = 148;    // the entry of the genre combo
    bool boxEnabled = false;  // the genre box is open for editing
};
GenreChoice Genre_From_Tcon(const QString& tcon);

// Milliseconds as text to "MM:SS", rounded to whole seconds; minutes are not
// cut at 59.
QString Tlen_To_Time(const QString& milliseconds);

}  // namespace sonorit
