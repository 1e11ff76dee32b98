#pragma once
// The file work that backup and restore share: which of two files is the
// newer, a copy that keeps its source's date and says why it failed, the walk
// over a backup tree, and the refusal of a backup folder that overlaps the
// library folder.
#include <QString>
#include <QStringList>
#include <functional>

#include "library/library_state.h"

namespace sonorit {

struct FileTime {
    bool exists = false;
    qint64 seconds = 0;
    qint64 nanoseconds = 0;
};

// The modification time of a file or folder; exists is false on any error.
FileTime File_Time(const QString& path);

// Whether `a` is later than `b` by date and time. Whole seconds count, as the
// dates of the library's files always counted; and where either time lies on
// a two-second step, as a FAT medium stores it, the two-second steps count,
// so that a copy rounded down there does not look older than its source.
bool Is_Later(const FileTime& a, const FileTime& b);

// A whole-file copy that keeps the source's modification time. The target is
// replaced only when the copy is complete on the disk; `failure` gets the
// system's reason when it is not.
struct CopyResult {
    bool ok = false;
    QString failure;
};
CopyResult Copy_Keeping_Time(const QString& source, const QString& target);

// Walks the folders below `root` (subfolders before the folder's own files)
// and hands each folder that holds "*.mp3" files to `visit` with their names.
// Hidden names are left out, linked folders and the folder `skip` are not
// entered, and what a killed copy left is removed on the way.
void Walk_Mp3_Folders(const QString& root, const QString& skip,
                      const std::function<void(const QString& folder, const QStringList& names)>& visit);

// The names of `folder` that hold MPEG audio, read with the progress texts of
// a folder scan.
QStringList Collect_Mp3_Tracks(UiPort& ui, const QString& folder, const QStringList& names);

// True, after telling the user, when the backup folder is the library folder,
// lies inside it or holds it: a mirror there would take the library's own
// files for copies.
bool Refuse_Overlapping_Backup(LibraryContext& c, const QString& backupFolder);

// The folder without its trailing "/" (the root stays "/").
QString Without_Slash(const QString& folder);

}  // namespace sonorit
