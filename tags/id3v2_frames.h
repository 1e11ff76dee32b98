#pragma once
// Readers of single ID3v2.3 frames at a 1-based position (the frame's header).
// Each reads the frame header itself and swallows its failures: text readers
// give the empty text, the others false.
#include <QByteArray>
#include <QString>

#include "byte_source.h"

namespace sonorit {

struct TagState;

// A text frame: encoding 0 drops NUL bytes (several strings run together),
// encoding 1 reads UTF-16 by its byte order mark. An empty text gives "0";
// a UTF-16 unit above 255 makes the read fail and gives "".
QString Read_Text_Frame(ByteSource& src, qint64 position);

// A COMM frame's parts as they stand in the file.
struct CommentParts {
    QString language;
    QString description;
    QString text;
};
// Language and description, then the text. NUL characters of the text stay
// unless dropNuls is set. False (with the parts read so far) on a failure.
bool Parse_Comment(ByteSource& src, qint64 position, bool dropNuls, CommentParts& parts);

// Stores language, description and text in Comment_Language,
// Comment_Description, Comment_Text_Read; returns the text.
QString Read_Comment_Frame(TagState& state, ByteSource& src, qint64 position);
// The same with the text's NUL characters dropped, storing language and text
// in the filename tagger's pair (FT_Tag2_Fields.Comment_Language and
// Comment_Read); the description still goes to Comment_Description.
QString Read_Comment_Quick(TagState& state, ByteSource& src, qint64 position);

// The start of an APIC frame: encoding, MIME type (single-byte text, or
// UTF-16 where a byte order mark stands in front of it) and picture type.
// The writer decides on old pictures with it.
struct PictureHead {
    bool ok = false;
    int encoding = 0;
    QString mime;
    int pictureType = -1;
    qint64 consumed = 0;  // bytes of the frame data read up to and including the picture type
};
PictureHead Read_Picture_Head(ByteSource& src, qint64 position);
bool Is_Jpeg_Mime(const QString& mime);

// Overlay writes the image over the start of the target, which is not
// truncated. Replace leaves exactly the image, the same bytes as a target
// deleted first, but without a delete and a create: a listing that shows
// one cover after another then costs the file system next to nothing.
enum class CoverWrite { Overlay, Replace };

// Copies the image of a JPEG front cover to target. True if it did. An empty
// image, or one that runs past the end of the file, is none; on false the
// target is as it was. An empty target only tells whether there is a cover.
bool Extract_Picture(ByteSource& src, qint64 position, const QString& target,
                     CoverWrite how = CoverWrite::Overlay);

}  // namespace sonorit
