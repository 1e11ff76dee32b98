#include "id3v2_frames.h"

#include "tag_state.h"

namespace sonorit {

QString Read_Text_Frame(ByteSource&, qint64) { return {}; }
bool Parse_Comment(ByteSource&, qint64, bool, CommentParts&) { return false; }
QString Read_Comment_Frame(TagState&, ByteSource&, qint64) { return {}; }
QString Read_Comment_Quick(TagState&, ByteSource&, qint64) { return {}; }
PictureHead Read_Picture_Head(ByteSource&, qint64) { return {}; }
bool Is_Jpeg_Mime(const QString& mime) { return mime == QLatin1String("image/jpeg") || mime == QLatin1String("image/jpg"); }
bool Extract_Picture(ByteSource&, qint64, const QString&) { return false; }

}  // namespace sonorit
