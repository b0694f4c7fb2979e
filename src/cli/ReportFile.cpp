#include "cli/ReportFile.h"

#include "collection/Failure.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace halvane::cli {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(FailureNumber number, const std::string& sPath) {
    throw Failure(number, fmt::format("\"{}\" cannot be written: {}", sPath, std::strerror(errno)));
}

/// What a new file would be allowed: a temporary file begins with less.
mode_t usualMode() {
    const mode_t lMask = ::umask(0);
    ::umask(lMask);
    return static_cast<mode_t>(0666U & ~lMask);
}

void writeAll(int lDescriptor, std::string_view sContent, const std::string& sPath) {
    while (!sContent.empty()) {
        const ssize_t lWritten = ::write(lDescriptor, sContent.data(), sContent.size());
        if (lWritten < 0 && errno == EINTR)
            continue;
        if (lWritten < 0)
            fail(FailureNumber::DeviceIo, sPath);
        sContent.remove_prefix(static_cast<std::size_t>(lWritten));
    }
}

} // namespace

ReportFile::ReportFile(std::string sPath) : sPath_(std::move(sPath)) {
    std::error_code error;
    const auto status = fs::status(sPath_, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        // A device or a pipe has its place for good: it is written, not replaced.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other way to open
        lDescriptor_ = ::open(sPath_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    } else {
        // A link stays a link: what it leads to is replaced.
        const fs::path resolved = fs::weakly_canonical(sPath_, error);
        if (!error)
            sPath_ = resolved.string();
        sTemporary_ = sPath_ + ".XXXXXX";
        lDescriptor_ = ::mkostemp(sTemporary_.data(), O_CLOEXEC);
    }
    if (lDescriptor_ < 0) {
        sTemporary_.clear();
        fail(FailureNumber::PathFileAccess, sPath_);
    }
}

ReportFile::~ReportFile() {
    close();
    if (!sTemporary_.empty())
        ::unlink(sTemporary_.c_str());
}

void ReportFile::commit(std::string_view sContent) {
    writeAll(lDescriptor_, sContent, sPath_);
    if (sTemporary_.empty())
        return;
    if (::fchmod(lDescriptor_, usualMode()) != 0 || ::rename(sTemporary_.c_str(), sPath_.c_str()) != 0)
        fail(FailureNumber::DeviceIo, sPath_);
    sTemporary_.clear();
}

void ReportFile::close() noexcept {
    if (lDescriptor_ >= 0)
        ::close(lDescriptor_);
    lDescriptor_ = -1;
}

} // namespace halvane::cli
