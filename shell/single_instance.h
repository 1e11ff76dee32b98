#pragma once
// One running program per user. The lock lives in the runtime folder and is
// taken before the data folder is touched; the kernel lets it go when the
// process dies, so a crash never blocks the next start.
#include <QString>
#include <memory>

class QLockFile;

namespace sonorit {

class SingleInstance {
public:
    SingleInstance();
    ~SingleInstance();
    // False when another instance holds the lock.
    bool acquire();
    static QString lockPath();

private:
    std::unique_ptr<QLockFile> lock_;
};

}  // namespace sonorit
