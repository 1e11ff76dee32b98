#pragma once
// The bytes of what the writers make themselves: the tag header and the
// program's own frames. Text is single-byte (Windows-1252), encoding byte 0,
// no terminators, and every size big-endian with all 8 bits used.
#include <QByteArray>
#include <QString>

namespace sonorit {

// "ID3", version 3, revision 0, flags 0, then `size` in four bytes of seven
// bits, high byte first. `size` must be below 2^28.
QByteArray Tag2_Header_Bytes(quint32 size);

// A text frame; the caller leaves it out when the text is empty.
QByteArray Text_Frame(const char* name, const QString& text);

// A COMM frame. The language is cut or padded with blanks to three bytes;
// an empty description is only its terminator.
QByteArray Comment_Frame(const QString& language, const QString& description, const QString& text);

// The 24 bytes of an APIC frame in front of a JPEG front cover of
// `imageLength` bytes; empty if that length cannot be stored.
QByteArray Picture_Frame_Head(qint64 imageLength);

}  // namespace sonorit
