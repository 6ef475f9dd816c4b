#pragma once

#include <csignal>
#include <sys/resource.h>

namespace KesTest {

/// While it lives no file of the process can grow beyond so many bytes: a disk that fills up at a known
/// place.
class LargestFile {
public:
    explicit LargestFile(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &_before);
        const rlimit limit{bytes, _before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~LargestFile() { setrlimit(RLIMIT_FSIZE, &_before); }
    LargestFile(const LargestFile&) = delete;
    LargestFile& operator=(const LargestFile&) = delete;

private:
    rlimit _before{};
};

} // namespace KesTest
