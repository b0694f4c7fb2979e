#include "telling/StandardStreams.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <cstdint>
#include <sanitizer/common_interface_defs.h>
#endif

namespace halvane {

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): there is one standard error
std::FILE* pOwnError = nullptr;
volatile int nOwnError = STDERR_FILENO;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

constexpr int nRoom = 1 << 20; // bytes; what an ordinary user may ask of a pipe
constexpr std::size_t nMostLines = 50;
constexpr const char* sMore = "further lines are left out";

void useForReports([[maybe_unused]] int nDescriptor) {
#ifdef __SANITIZE_ADDRESS__
    // NOLINTNEXTLINE(*-reinterpret-cast, performance-no-int-to-ptr): the sanitizer's signature
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(nDescriptor)));
#endif
}

void addLines(std::string_view sText, std::vector<std::string>& lines) {
    while (!sText.empty()) {
        const auto nEnd = std::min(sText.find('\n'), sText.size());
        const auto sLine = sText.substr(0, nEnd);
        sText.remove_prefix(std::min(nEnd + 1, sText.size()));
        if (sLine.empty() || std::find(lines.begin(), lines.end(), sLine) != lines.end())
            continue;
        if (lines.size() == nMostLines) {
            lines.emplace_back(sMore);
            return;
        }
        lines.emplace_back(sLine);
    }
}

/// All that a pipe holds; nobody writes to it any more, or they are not waited for.
std::string drain(int nPipe) {
    std::string sText;
    std::array<char, 4096> buffer; // NOLINT(*-member-init): filled by what is read
    for (;;) {
        const auto nRead = ::read(nPipe, buffer.data(), buffer.size());
        if (nRead > 0)
            sText.append(buffer.data(), static_cast<std::size_t>(nRead));
        else if (nRead == 0 || errno != EINTR)
            return sText;
    }
}

} // namespace

void fillStandardStreams() noexcept {
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the platform's signatures
    for (int nDescriptor = 0; nDescriptor <= STDERR_FILENO; ++nDescriptor)
        if (::fcntl(nDescriptor, F_GETFD) < 0 && errno == EBADF)
            static_cast<void>(::open("/dev/null", O_RDWR)); // the lowest free number: this one
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
}

std::FILE* standardError() noexcept {
    return pOwnError == nullptr ? stderr : pOwnError;
}

int standardErrorDescriptor() noexcept {
    return nOwnError;
}

LibraryLines::LibraryLines() noexcept {
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the platform's signatures
    const int nOwn = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    std::array<int, 2> ends{-1, -1};
    if (nOwn < 0)
        return;
    pOwn_ = ::fdopen(nOwn, "w");
    // Whoever writes must never wait for those lines to be read.
    if (pOwn_ == nullptr || ::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        static_cast<void>(pOwn_ == nullptr ? ::close(nOwn) : std::fclose(pOwn_));
        pOwn_ = nullptr;
        return;
    }
    static_cast<void>(::fcntl(ends[1], F_SETPIPE_SZ, nRoom));
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
    static_cast<void>(std::fflush(stderr));
    ::dup2(ends[1], STDERR_FILENO);
    ::close(ends[1]);
    nKept_ = ends[0];
    pOwnError = pOwn_;
    nOwnError = nOwn;
    useForReports(nOwn);
}

LibraryLines::~LibraryLines() {
    end();
    if (nKept_ >= 0)
        ::close(nKept_);
}

void LibraryLines::end() noexcept {
    if (pOwn_ == nullptr)
        return;
    static_cast<void>(std::fflush(stdout)); // it may lead there, too
    static_cast<void>(std::fflush(stderr));
    static_cast<void>(std::fflush(pOwn_));
    ::dup2(::fileno(pOwn_), STDERR_FILENO);
    nOwnError = STDERR_FILENO;
    pOwnError = nullptr;
    useForReports(STDERR_FILENO);
    static_cast<void>(std::fclose(pOwn_));
    pOwn_ = nullptr;
}

std::vector<std::string> LibraryLines::take() {
    std::vector<std::string> lines;
    end();
    if (nKept_ < 0)
        return lines;
    const std::string sText = drain(nKept_);
    addLines(sText, lines);
    if (sText.size() >= static_cast<std::size_t>(nRoom) - PIPE_BUF && lines.back() != sMore)
        lines.emplace_back(sMore);
    return lines;
}

} // namespace halvane
