#pragma once

#include <csignal>
#include <sys/resource.h>

namespace halvane::test {

/// Lets every file of the process end at a size, as a full disk would, for as long as it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t nBytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &oldLimit_);
        const rlimit limit{nBytes, oldLimit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &oldLimit_);
        (void)std::signal(SIGXFSZ, oldHandler_);
    }

private:
    rlimit oldLimit_{};
    void (*oldHandler_)(int);
};

} // namespace halvane::test
