#include "sylt.h"

namespace sonorit {

bool Read_Synced_Lyrics(TagState&, ByteSource&) { return false; }
bool Read_Synced_Lyrics(TagState&, const QString&) { return false; }
bool Parse_SYLT(LyricState&, ByteSource&, qint64) { return false; }

}  // namespace sonorit
