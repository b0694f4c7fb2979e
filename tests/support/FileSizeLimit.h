#pragma once

#include <cstdint>
#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

namespace halvane::test {

/// Lets every file of the process end at a size, as a full disk would, for as long as it lives.
class FileSizeLimit {
public:
    static constexpr const char* whyNot = "the system cannot limit the size of a process's files";
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

#ifdef _WIN32
    static constexpr bool isPossible = false;

    explicit FileSizeLimit(std::uint64_t /*nBytes*/) {}
    ~FileSizeLimit() {} // NOLINT(modernize-use-equals-default): the guard of a scope
#else
    static constexpr bool isPossible = true;

    explicit FileSizeLimit(std::uint64_t nBytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &oldLimit_);
        const rlimit limit{nBytes, oldLimit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &oldLimit_);
        (void)std::signal(SIGXFSZ, oldHandler_);
    }

private:
    rlimit oldLimit_{};
    void (*oldHandler_)(int);
#endif
};

} // namespace halvane::test
