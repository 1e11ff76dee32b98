#include "id3v2_writer_frames.h"

#include "shell/codepage.h"

namespace sonorit {

namespace {
void appendBigEndian32(QByteArray& out, quint32 v)
{
    out.append(char(v >> 24)).append(char(v >> 16)).append(char(v >> 8)).append(char(v));
}

QByteArray frameHead(const char* name, quint32 size)
{
    QByteArray head(name, 4);
    appendBigEndian32(head, size);
    head.append(2, '\0');  // flags
    return head;
}
}  // namespace

QByteArray Tag2_Header_Bytes(quint32 size)
{
    QByteArray h("ID3\x03\x00\x00", 6);
    for (int shift = 21; shift >= 0; shift -= 7)
        h.append(char((size >> shift) & 0x7F));
    return h;
}

QByteArray Text_Frame(const char* name, const QString& text)
{
    const QByteArray bytes = toCp1252(text);
    QByteArray frame = frameHead(name, quint32(bytes.size()) + 1);
    frame.append('\0');  // encoding: single byte
    frame.append(bytes);
    return frame;
}

QByteArray Comment_Frame(const QString& language, const QString& description, const QString& text)
{
    const QByteArray lang = toCp1252(language).left(3).leftJustified(3, ' ');
    const QByteArray desc = toCp1252(description);
    const QByteArray body = toCp1252(text);
    QByteArray frame = frameHead("COMM", quint32(body.size() + desc.size()) + 5);
    frame.append('\0');  // encoding: single byte
    frame.append(lang).append(desc).append('\0').append(body);
    return frame;
}

QByteArray Picture_Frame_Head(qint64 imageLength)
{
    if (imageLength < 0 || imageLength > qint64(0xFFFFFFFFu) - 14)
        return {};
    QByteArray head = frameHead("APIC", quint32(imageLength) + 14);
    // Encoding 0, MIME type with its terminator, type 3 (front cover), and
    // the terminator of an empty description.
    head.append('\0').append("image/jpeg").append('\0').append('\x03').append('\0');
    return head;
}

}  // namespace sonorit
