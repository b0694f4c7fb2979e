#include "io/FileReading.h"
#include "io/PosixFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace halvane::io {

namespace {

constexpr std::size_t pieceSize = 256U << 10U;

std::size_t sizeHint(const FileDescriptor& file, std::size_t nLimit) {
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return 0;
    return std::min(static_cast<std::size_t>(status.st_size), nLimit);
}

// A pipe may never end, and may have no writer at all: opening must not wait for one.
bool isPipe(const FileDescriptor& file) {
    struct stat status = {};
    return ::fstat(file.get(), &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

ReadProblem readFile(const std::string& sPath, std::size_t nLimit, std::string& sContent) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    const FileDescriptor file(::open(sPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        return {fileFailure(errno, sPath).description()};
    if (isPipe(file))
        return {sPath + ": a pipe is not read; give a file"};
    sContent.clear();
    sContent.reserve(sizeHint(file, nLimit) + 1);
    for (;;) {
        const std::size_t nBefore = sContent.size();
        sContent.resize(std::max(sContent.capacity(), nBefore + pieceSize));
        const auto nRead = ::read(file.get(), sContent.data() + nBefore, sContent.size() - nBefore);
        const int nError = errno;
        sContent.resize(nBefore + static_cast<std::size_t>(std::max<ssize_t>(nRead, 0)));
        if (nRead == 0)
            return {};
        if (nRead < 0 && nError != EINTR)
            return {fileFailure(nError, sPath).description()};
        if (sContent.size() > nLimit)
            return {sPath + ": the file is larger than " + std::to_string(nLimit >> 20U) + " MiB", true};
    }
}

} // namespace halvane::io
