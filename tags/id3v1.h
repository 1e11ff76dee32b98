#pragma once
// The 128-byte ID3v1.1 tag at the end of a file, and the genre vocabulary
// that every genre combo of the program shares.
#include <QString>
#include <QStringList>

#include "byte_source.h"
#include "tag_state.h"

namespace sonorit {

class UiPort;

// 150 names: 0 to 147 are the genres a tag can name, 148 "Unknown" and 149
// "User Defined" are the program's own.
const QStringList& Genre_Names();
// The index among 0 to 147 of a name, compared exactly; -1 if none.
int Genre_Index(const QString& name);
// What the Tag1 panel selects for a Genre byte: 150 and above give 148.
int Tag1_Genre_Entry(quint8 genre);
// The panel's two-digit track: the last two digits of Track + 100.
QString Tag1_Track_Text(quint8 track);

// Blanks the record, then fills it from the tag if "TAG" stands 128 bytes
// before the end. False when there was no tag.
bool Parse_Tag1(ByteSource& src, Tag1Record& record);

// Both functions report a failure to open, read or write themselves: a
// message box with the system's description and the title " Error".
void Read_Tag1(TagState& state, const QString& path, UiPort& ui);
// Writes the record in place of an existing tag or appends one; the record
// is not changed. False after a failure (already reported).
bool Write_Tag1(const TagState& state, const QString& path, UiPort& ui);

}  // namespace sonorit
