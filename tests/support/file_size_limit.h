#pragma once
// A real write error for a test: the system refuses to grow a file beyond
// `bytes`, as on a full disk, until the object goes.
#include <csignal>
#include <sys/resource.h>

namespace sonorit::test {

struct FileSizeLimit {
    rlimit old{};
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &old);
        const rlimit limit{bytes, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &old); }
};

}  // namespace sonorit::test
