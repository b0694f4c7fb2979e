#include "io/PosixFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace halvane::io {

namespace {

/// Where an open file is found by its descriptor.
std::string pathOfDescriptor(const FileDescriptor& file) {
    return "/proc/self/fd/" + std::to_string(file.get());
}

} // namespace

FileDescriptor::~FileDescriptor() {
    (void)close();
}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        (void)close();
        nDescriptor_ = std::exchange(other.nDescriptor_, -1);
    }
    return *this;
}

int FileDescriptor::close() noexcept {
    const int nDescriptor = nDescriptor_;
    nDescriptor_ = -1;
    return nDescriptor >= 0 && ::close(nDescriptor) != 0 ? errno : 0;
}

int writeAll(const FileDescriptor& file, std::string_view sBytes) noexcept {
    while (!sBytes.empty()) {
        const auto nWritten = ::write(file.get(), sBytes.data(), sBytes.size());
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten < 0)
            return errno;
        sBytes.remove_prefix(static_cast<std::size_t>(nWritten));
    }
    return 0;
}

int syncToDisk(const FileDescriptor& file) noexcept {
    // Some places have no disk.
    return ::fsync(file.get()) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS ? 0 : errno;
}

bool canBeLinked(const FileDescriptor& file) {
    return ::access(pathOfDescriptor(file).c_str(), F_OK) == 0;
}

int linkOpenFile(const FileDescriptor& file, const std::string& sPath) {
    const int nResult =
        ::linkat(AT_FDCWD, pathOfDescriptor(file).c_str(), AT_FDCWD, sPath.c_str(), AT_SYMLINK_FOLLOW);
    return nResult == 0 ? 0 : errno;
}

std::string errorText(int nError) {
    std::string sText = std::generic_category().message(nError);
    if (nError == EACCES || nError == EPERM)
        sText += "; change the rights of the file and its folder, or choose another place";
    else if (nError == EROFS)
        sText += "; choose another place";
    return sText;
}

Failure fileFailure(int nError, std::string_view sPath) {
    const std::string sText = std::string(sPath) + ": " + errorText(nError);
    switch (nError) {
    case ENOENT:
        return {FailureNumber::FileNotFound, sText};
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
        return {FailureNumber::PathFileAccess, sText};
    default:
        return {FailureNumber::DeviceIo, sText};
    }
}

} // namespace halvane::io
