#include "id3v2_frames.h"

#include <QFile>
#include <algorithm>

#include "frame_cursor.h"
#include "shell/codepage.h"
#include "tag2_header.h"
#include "tag_state.h"

namespace sonorit {

namespace {
constexpr qint64 kHeader = 10;

// Bytes a frame's data may still claim from `offset` on: never more than the
// source holds, so a wild size costs nothing.
qint64 available(ByteSource& src, qint64 offset, qint64 wanted)
{
    return std::clamp<qint64>(wanted, 0, std::max<qint64>(0, src.size() - offset));
}

// UTF-16 units as text; false when a unit above 255 has no character in the
// single-byte page. Zero units are dropped or kept as the caller says.
bool unitsToText(const QByteArray& raw, bool bigEndian, bool keepZeros, QString& out)
{
    QByteArray bytes;
    bytes.reserve(raw.size() / 2);
    for (qsizetype i = 0; i + 1 < raw.size(); i += 2) {
        const int hi = static_cast<unsigned char>(raw[bigEndian ? i : i + 1]);
        const int lo = static_cast<unsigned char>(raw[bigEndian ? i + 1 : i]);
        if (hi != 0)
            return false;
        if (lo != 0 || keepZeros)
            bytes += static_cast<char>(lo);
    }
    out = fromCp1252(bytes);
    return true;
}

bool atByteOrderMark(FrameCursor& c)
{
    const int a = c.peek(), b = c.peek(1);
    return (a == 0xFF && b == 0xFE) || (a == 0xFE && b == 0xFF);
}

// The MIME type is single-byte text whatever the encoding byte says; only a
// tag that wrote it in UTF-16 anyway (a byte order mark in front) is read so.
bool readMime(FrameCursor& c, int encoding, QString& out)
{
    if (encoding == 1 && atByteOrderMark(c)) {
        bool ok = true;
        const bool bigEndian = c.readByteOrderMark();
        out = c.unitsToZero(bigEndian, ok);
        return ok;
    }
    out = fromCp1252(c.bytesToZero());
    return true;
}

// Passes a picture's description, which the program drops: its characters
// do not matter, only where it ends. In UTF-16 an empty description may be
// its terminator alone, without a byte order mark.
void skipDescription(FrameCursor& c, int encoding)
{
    if (encoding != 1 && encoding != 2) {
        c.bytesToZero();
        return;
    }
    bool ok = true;
    bool bigEndian = encoding == 2;
    if (encoding == 1 && c.peek() == 0 && c.peek(1) == 0) {
        c.unit(false);
        return;
    }
    if (encoding == 1 && atByteOrderMark(c))
        bigEndian = c.readByteOrderMark();
    c.unitsToZero(bigEndian, ok);
}

bool copyImage(ByteSource& src, qint64 offset, qint64 count, const QString& target, CoverWrite how)
{
    QFile out(target);
    // Not truncated: a smaller later image leaves the tail of a former one.
    if (!out.open(QIODevice::ReadWrite))
        return false;
    if (how == CoverWrite::Replace && out.size() > count && !out.resize(count))
        return false;
    char buffer[4096];
    qint64 block = 4096;
    while (count > 0) {
        while (block > count)
            block /= 2;
        if (!src.readExact(offset, buffer, block) || out.write(buffer, block) != block)
            return false;
        offset += block;
        count -= block;
    }
    return true;
}
}  // namespace

QString Read_Text_Frame(ByteSource& src, qint64 position)
{
    const auto frame = Read_Frame_Header(src, position);
    if (!frame)
        return {};
    const qint64 size = frame->Frame_Size;
    const qint64 data = position - 1 + kHeader;
    const int encoding = src.byteAt(data);
    QString text;
    if (encoding == 0) {
        QByteArray bytes = src.bytesAt(data + 1, available(src, data + 1, size - 1));
        bytes.replace('\0', QByteArray());
        text = fromCp1252(bytes);
    } else if (encoding == 1) {
        const bool bigEndian = src.byteAt(data + 1) < 255;
        const qint64 units = (size - 1) / 2 - 1;
        const QByteArray raw = src.bytesAt(data + 3, available(src, data + 3, units * 2));
        if (!unitsToText(raw, bigEndian, false, text))
            return {};
    }
    return text.isEmpty() ? QStringLiteral("0") : text;
}

bool Parse_Comment(ByteSource& src, qint64 position, bool dropNuls, CommentParts& parts)
{
    parts = CommentParts{};
    const auto frame = Read_Frame_Header(src, position);
    if (!frame)
        return false;
    const qint64 size = frame->Frame_Size;
    FrameCursor c(src, position + kHeader);
    const int encoding = c.byte();
    QByteArray language;
    for (int i = 0; i < 3; ++i) {
        const int b = c.byte();
        if (b >= 0)
            language += static_cast<char>(b);
    }
    parts.language = fromCp1252(language);

    if (encoding == 0) {
        parts.description = fromCp1252(c.bytesToZero());
        const qint64 at = position - 1 + kHeader + c.consumed();
        QByteArray bytes = src.bytesAt(at, available(src, at, size - (parts.description.size() + 5)));
        if (dropNuls)
            bytes.replace('\0', QByteArray());
        parts.text = fromCp1252(bytes);
        return true;
    }
    if (encoding == 1) {
        bool ok = true;
        const QString description = c.unitsToZero(c.readByteOrderMark(), ok);
        if (!ok)
            return false;
        parts.description = description;
        const qint64 textBytes = size - (2 * description.size() + 8);
        const bool bigEndian = c.readByteOrderMark();
        const qint64 at = position - 1 + kHeader + c.consumed();
        const QByteArray raw = src.bytesAt(at, available(src, at, (textBytes - 2) / 2 * 2));
        return unitsToText(raw, bigEndian, !dropNuls, parts.text);
    }
    return true;
}

QString Read_Comment_Frame(TagState& state, ByteSource& src, qint64 position)
{
    CommentParts parts;
    const bool ok = Parse_Comment(src, position, false, parts);
    state.Comment_Language = parts.language;
    state.Comment_Description = parts.description;
    if (!ok)
        return {};
    state.Comment_Text_Read = parts.text;
    return parts.text;
}

QString Read_Comment_Quick(TagState& state, ByteSource& src, qint64 position)
{
    CommentParts parts;
    const bool ok = Parse_Comment(src, position, true, parts);
    state.FT_Tag2_Fields.Comment_Language = parts.language;
    state.Comment_Description = parts.description;
    if (!ok)
        return {};
    state.FT_Tag2_Fields.Comment_Read = parts.text;
    return parts.text;
}

PictureHead Read_Picture_Head(ByteSource& src, qint64 position)
{
    PictureHead head;
    if (!Read_Frame_Header(src, position))
        return head;
    FrameCursor c(src, position + kHeader);
    head.encoding = c.byte();
    if (!readMime(c, head.encoding, head.mime))
        return head;
    head.pictureType = c.byte();
    head.consumed = c.consumed();
    head.ok = head.pictureType >= 0;
    return head;
}

bool Is_Jpeg_Mime(const QString& mime)
{
    return mime == QLatin1String("image/jpeg") || mime == QLatin1String("image/jpg");
}

bool Extract_Picture(ByteSource& src, qint64 position, const QString& target, CoverWrite how)
{
    const auto frame = Read_Frame_Header(src, position);
    const PictureHead head = Read_Picture_Head(src, position);
    if (!frame || !head.ok || !Is_Jpeg_Mime(head.mime) || head.pictureType != 3)
        return false;
    FrameCursor c(src, position + kHeader + head.consumed);
    skipDescription(c, head.encoding);
    const qint64 counted = head.consumed + c.consumed();
    const qint64 start = position - 1 + kHeader + counted;
    const qint64 count = qint64(frame->Frame_Size) - counted;
    // An image that is empty or runs past the file is no image: the target
    // stays untouched.
    if (count <= 0 || start + count > src.size())
        return false;
    return target.isEmpty() || copyImage(src, start, count, target, how);
}

}  // namespace sonorit
