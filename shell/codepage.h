#pragma once
// Windows-1252, the single-byte page of tag text and of library files made by
// the Windows program. A character the page cannot hold is written as "?".
#include <QByteArray>
#include <QString>

namespace sonorit {

QString fromCp1252(const char* data, qsizetype size);
inline QString fromCp1252(const QByteArray& bytes) { return fromCp1252(bytes.constData(), bytes.size()); }
QByteArray toCp1252(const QString& text);

// Library files, playlists and settings hold UTF-8; text that is not valid
// UTF-8 is taken as Windows-1252 so that old files still open.
QString decodeFileText(const char* data, qsizetype size);
inline QString decodeFileText(const QByteArray& bytes) { return decodeFileText(bytes.constData(), bytes.size()); }

}  // namespace sonorit
