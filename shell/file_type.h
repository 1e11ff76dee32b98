#pragma once
// The library file type on freedesktop terms: a MIME type for "*.vkt" and a
// desktop entry that opens it with this program. Files are written only when
// their content differs; every failure is silent.
#include <QByteArray>
#include <QString>

namespace sonorit {

extern const char* const kLibraryMimeType;  // "application/x-zevsonorit-library"

// key and verb name the type as the Windows program did; only the description
// and the program path matter here.
void Register_File_Type(const QString& description, const QString& programPath);
// The program's icon in the user's icon theme, named as the desktop entry's
// Icon key says.
void Install_Program_Icon(const QByteArray& svg);
// Makes the desktop entry the default for the type unless it already is.
void Associate_Extension(const QString& extension, const QString& typeName);

}  // namespace sonorit
