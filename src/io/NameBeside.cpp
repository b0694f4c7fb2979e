#include "io/NameBeside.h"

#include "io/PosixFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace halvane::io {

namespace {

std::string nameBeside(const std::filesystem::path& target, int n) {
    // The longest name leaves no room for what is put around it.
    constexpr std::size_t enough = 200;
    const std::string sName =
        "." + target.filename().string().substr(0, enough) + "." + std::to_string(n) + ".tmp";
    return (target.parent_path() / sName).string();
}

bool isStillNamed(const FileDescriptor& file, const std::string& sPath) {
    struct stat opened = {};
    struct stat named = {};
    return ::fstat(file.get(), &opened) == 0 && S_ISREG(opened.st_mode) &&
           ::lstat(sPath.c_str(), &named) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

bool isNamed(const std::string& sPath) {
    struct stat status = {};
    return ::lstat(sPath.c_str(), &status) == 0;
}

/// @returns whether nothing has the name now.
bool removeAbandoned(const std::string& sPath) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    const FileDescriptor file(::open(sPath.c_str(), flags));
    if (!file.isOpen())
        return errno == ENOENT || !isNamed(sPath);
    return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 && isStillNamed(file, sPath) &&
           ::unlink(sPath.c_str()) == 0;
}

} // namespace

void lockWhileOpen(const FileDescriptor& file) noexcept {
    static_cast<void>(::flock(file.get(), LOCK_EX | LOCK_NB));
}

bool lockWhileOpen(const FileDescriptor& file, const std::string& sPath) noexcept {
    return (::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) && isStillNamed(file, sPath);
}

std::string freeNameBeside(const std::filesystem::path& target) {
    // Names are taken from the first on: behind so many free ones there is none that was left.
    constexpr int looks = 8;
    std::string sFree;
    for (int n = 1; n <= looks || sFree.empty(); ++n) {
        std::string sName = nameBeside(target, n);
        if (removeAbandoned(sName) && sFree.empty())
            sFree = std::move(sName);
    }
    return sFree;
}

} // namespace halvane::io
