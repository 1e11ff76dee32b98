#pragma once
// What the tag writers and the strip share: a new file that exists only when
// it is complete, and copies out of a byte source that never hold more than
// one block.
#include <QString>
#include <functional>

#include "byte_source.h"

class QIODevice;

namespace sonorit {

// Copies `count` bytes of `source` from the 1-based position to `out`, in
// blocks of 4096 bytes and then halving powers of two for the rest. False on
// a short read (the source ends early) or a failed write.
bool Copy_Source_Range(ByteSource& source, qint64 position, qint64 count, QIODevice& out);

// Deletes any file at `target`, creates it and lets `build` write it. A build
// that fails, and a file the system could not finish writing, are removed
// again; only a complete file remains.
bool Build_New_File(const QString& target, const std::function<bool(QIODevice&)>& build);

// Builds `target` from the audio file `source`: refused when both are one
// file, and without audio the target is not touched at all.
bool Build_From_Audio(const QString& source, const QString& target,
                      const std::function<bool(ByteSource&, QIODevice&)>& build);
// True when the user lets the program change the file: the system allows
// writing it and its mode keeps a write permission, so that a file made
// read-only stays as it is even for the administrator.
bool Is_Writable_File(const QString& path);
// True when both paths name the same existing file: a writer must never
// delete its own source as its target.
bool Same_File(const QString& a, const QString& b);

}  // namespace sonorit
