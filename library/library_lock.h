#pragma once
// One writer at a time: an advisory lock on a file beside the Trackfile,
// held for the time of each change. Readers never take it.
#include <QString>
#include <functional>
#include <sys/types.h>
#include <utility>

#include "library/library_state.h"

namespace sonorit {

QString Library_In_Use_Text();  // "The library is in use by another program."

class LibraryLock {
public:
    LibraryLock() = default;
    ~LibraryLock() { release(); }
    LibraryLock(const LibraryLock&) = delete;
    LibraryLock& operator=(const LibraryLock&) = delete;

    // Waits up to `waitMs` for the lock of the library whose Trackfile is
    // `trackfile`; false when another program keeps holding it. Within a
    // change that holds the lock already, true at once.
    bool acquire(const QString& trackfile, int waitMs = 2000);
    void release();

private:
    int fd_ = -1;
    std::pair<dev_t, ino_t> held_{};
    bool holds_ = false;
};

// Runs `change` on the open library under its lock. A library that another
// program changed since this one last read or wrote it is opened again first,
// so that no change of the other is lost. When the lock stays taken the user
// is told and nothing changes.
bool With_Library_Lock(LibraryContext& c, const std::function<void()>& change);

// Remembers the Trackfile as it stands now, as written or read by this program.
void Note_Library_Seen(LibraryContext& c);

}  // namespace sonorit
