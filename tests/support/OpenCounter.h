#pragma once

#include <array>
#include <filesystem>
#include <sys/inotify.h>
#include <unistd.h>

namespace halvane::test {

/// Counts how often files of a folder are opened, as the system tells it.
class OpenCounter {
public:
    explicit OpenCounter(const std::filesystem::path& folder) : nDescriptor_(::inotify_init1(IN_NONBLOCK)) {
        nWatch_ = ::inotify_add_watch(nDescriptor_, folder.c_str(), IN_OPEN);
    }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;
    ~OpenCounter() { ::close(nDescriptor_); }

    [[nodiscard]] bool works() const { return nWatch_ >= 0; }

    /// Since the last call.
    [[nodiscard]] int opens() const {
        alignas(inotify_event) std::array<char, 4096> aBuffer{};
        int nOpens = 0;
        for (;;) {
            const ssize_t nRead = ::read(nDescriptor_, aBuffer.data(), aBuffer.size());
            if (nRead <= 0)
                return nOpens;
            for (ssize_t n = 0; n < nRead; ++nOpens) {
                const auto* const pEvent = reinterpret_cast<const inotify_event*>(aBuffer.data() + n);
                n += static_cast<ssize_t>(sizeof(inotify_event) + pEvent->len);
            }
        }
    }

private:
    int nDescriptor_;
    int nWatch_ = -1;
};

} // namespace halvane::test
