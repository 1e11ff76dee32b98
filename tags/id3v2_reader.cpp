#include "id3v2_reader.h"

namespace sonorit {

void Read_Tag2(TagState&, ByteSource&, const QString&, Tag2Mode) {}
void Read_Tag2(TagState&, const QString&, Tag2Mode) {}
GenreChoice Genre_From_Tcon(const QString&) { return {}; }
QString Tlen_To_Time(const QString&) { return {}; }

}  // namespace sonorit
