#pragma once
// Small path and text helpers used throughout. The path separator is "/".
#include <QString>
#include <QStringList>

namespace sonorit {

class UiPort;

QString Get_Path_Folder(const QString& path);
QString Get_Path_File(const QString& path);
QString Add_Backslash(const QString& text);
bool File_Exists(const QString& path);
QString Format_Seconds(long long seconds);
QString Format_Seconds_Short(long long seconds);
QString Clean_File_Name(const QString& text);
// Blanks cut from both ends, as the old runtime's Trim (tabs stay).
QString Trim(const QString& text);

// The text a file dialog hands back for a selection: one path as it is,
// several as the folder followed by the names, joined by "|".
QString Join_Dialog_Selection(const QStringList& paths);
QString File_Dialog(UiPort& ui, int mode, const QString& title, const QString& fileName,
                    const QString& filterDescription, const QString& filterPattern,
                    const QString& startFolder, const QString& defaultExtension, bool multiSelect);
QString Browse_For_Folder(UiPort& ui);
void Wait_Milliseconds(UiPort& ui, int milliseconds);

// The numeric value of a text the way the old runtime's Val() reads it:
// leading blanks skipped, an optional sign, digits up to the first other
// character; no digits give 0.
long long Val(const QString& text);

}  // namespace sonorit
