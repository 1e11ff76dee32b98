#pragma once
// The "Last Changed" and "Filelength" columns of a track, from one status
// query: the modification time in local time as "yyyy-MM-dd HH:mm:ss" (two
// readings of an unchanged file give the same text) and the size in bytes.
#include <QString>

namespace sonorit {

struct FileStamp {
    bool exists = false;
    QString changed;
    QString length;
};

FileStamp Read_File_Stamp(const QString& path);

}  // namespace sonorit
