#pragma once
// Copies in blocks of 4096 bytes and then the largest power of two that fits,
// down to 1, so that no buffer larger than a block is ever held.
#include <QString>

class QIODevice;

namespace sonorit {

// Copies `count` bytes from the current position of `in` to `out`; false on
// any short read or write.
bool copyBlocks(QIODevice& in, QIODevice& out, qint64 count);

// A whole-file copy that keeps the source's modification time, as a copy on
// the original platform does. The target is replaced only when complete.
bool copyFileKeepingTime(const QString& source, const QString& target);

// Moves a file. Within one file system this is a rename; across file systems
// the file is copied beside its target, put in place complete, and only then
// is the source deleted, so that no failure leaves the file nowhere.
bool moveFile(const QString& source, const QString& target);

// Deletes a file, retrying while serving the queue until it is gone or
// `attempts` rounds have passed (0: until gone or the file cannot be deleted
// at all because it is not there).
class UiPort;
bool deleteUntilGone(const QString& path, UiPort* ui, int attempts = 50);

}  // namespace sonorit
