#pragma once
// Reads a whole file the program keeps its data in, refusing anything that is
// not a regular file (a FIFO would block, a device never end) and anything
// larger than such a file can plausibly be.
#include <QByteArray>
#include <QString>

namespace sonorit {

enum class ReadResult { Read, Missing, NotRegular, TooLarge, Failed };

ReadResult Read_Regular_File(const QString& path, qint64 maxBytes, QByteArray* bytes);

}  // namespace sonorit
