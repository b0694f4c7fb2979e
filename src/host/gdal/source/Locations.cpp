#include "host/gdal/source/Locations.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/Errors.h"
#include "io/PosixFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace halvane::host::gdal {

namespace fs = std::filesystem;

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSchemeCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || c == '_';
}

// "x:" is a drive letter; a scheme has two characters or more.
bool startsWithScheme(std::string_view sText) {
    const auto* const pEnd = std::find_if_not(sText.begin(), sText.end(), isSchemeCharacter);
    return pEnd != sText.end() && *pEnd == ':' && pEnd - sText.begin() >= 2 && isLetter(sText.front());
}

[[noreturn]] void refuse(std::string_view sLocation, std::string_view sWhy) {
    throw Failure(FailureNumber::HostFailure, "The location \"" + withoutPasswords(sLocation).substr(0, 200) +
                                                  "\" is refused: " + std::string(sWhy));
}

void refuseUnlessPlain(std::string_view sLocation, std::string_view sText) {
    const std::string sLower = lowerCase(sText);
    if (sText.empty())
        refuse(sLocation, "it is empty");
    if (sText.find('\0') != std::string_view::npos)
        refuse(sLocation, "it holds a NUL character");
    if (sLower.find("/vsi") == sLower.find_first_not_of('/') - 1 && sLower.starts_with('/'))
        refuse(sLocation, "virtual file systems are not read; give the path of a file or a folder");
    if (sText.front() == '<' || sText.front() == '{' || sText.front() == '[')
        refuse(sLocation, "inline definitions are not read; give the path of a file or a folder");
    if (sLower.starts_with("file:"))
        refuse(sLocation, "addresses are not read; give the path of the file or the folder");
    if (startsWithScheme(sText)) {
        refuse(sLocation,
               "services are not read, and of servers only a PostgreSQL database by the name of a "
               "<Connection> of a map document; save a service's data as a file and give its path");
    }
    if (sLower.ends_with(".vrt") || sLower.find(".vrt/") != std::string::npos)
        refuse(sLocation, "virtual datasets are not read; give the path of the data itself");
}

// Such files are none although they say so, whatever size they state: some wait for ever for what they shall
// tell, and reading from others has effects.
bool isOfKernel(const std::string& sPath) {
    constexpr std::array<std::uint64_t, 10> aSystems{
        PROC_SUPER_MAGIC,    SYSFS_MAGIC,      DEBUGFS_MAGIC, TRACEFS_MAGIC, CGROUP_SUPER_MAGIC,
        CGROUP2_SUPER_MAGIC, SECURITYFS_MAGIC, SELINUX_MAGIC, BPF_FS_MAGIC,  PSTOREFS_MAGIC};
    struct statfs facts = {};
    return ::statfs(sPath.c_str(), &facts) == 0 &&
           std::find(aSystems.begin(), aSystems.end(), static_cast<std::uint64_t>(facts.f_type)) !=
               aSystems.end();
}

} // namespace

std::string filePathOf(std::string_view sLocation, const std::string& sBaseFolder) {
    std::string sText = replaceAll(trimBlanks(sLocation), "\\", "/");
    refuseUnlessPlain(sLocation, sText);
    std::string sPath = (fs::path(sBaseFolder) / sText).lexically_normal().string();
    while (sPath.size() > 1 && sPath.ends_with('/'))
        sPath.pop_back();
    // Again, since resolving can bring a refused name to the front.
    refuseUnlessPlain(sLocation, sPath);
    return sPath;
}

std::string folderOf(const std::string& sPath) {
    return fs::path(sPath).parent_path().string();
}

std::string stemOf(const std::string& sPath) {
    return fs::path(sPath).stem().string();
}

std::string extensionOf(const std::string& sPath) {
    const std::string sExtension = fs::path(sPath).extension().string();
    return sExtension.empty() ? sExtension : lowerCase(sExtension.substr(1));
}

bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder) {
    // The last part of a folder that ends with a separator is empty.
    const auto pEnd = folder.has_filename() ? folder.end() : std::prev(folder.end());
    return std::mismatch(folder.begin(), pEnd, path.begin(), path.end()).first == pEnd;
}

std::string currentFolder() {
    std::error_code error;
    const fs::path folder = fs::current_path(error);
    return error ? "/" : folder.string();
}

std::string whyMissing(const std::string& sPath) {
    const bool bClosed = ::access(sPath.c_str(), F_OK) != 0 && errno == EACCES;
    if (bClosed)
        return "\"" + sPath + "\" cannot be reached: " + io::errorText(EACCES);
    std::error_code error;
    return fs::exists(sPath, error) ? "\"" + sPath + "\" is neither a file nor a folder that holds data"
                                    : "There is no file or folder \"" + sPath + "\"";
}

std::string whyDenied(const std::string& sPath) {
    const bool bDenied = ::access(sPath.c_str(), R_OK) != 0 && errno == EACCES;
    return bDenied ? "\"" + sPath + "\" cannot be read: " + io::errorText(EACCES) : std::string();
}

bool isFolder(const std::string& sPath) {
    std::error_code error;
    return fs::is_directory(sPath, error);
}

bool isFile(const std::string& sPath) {
    struct stat facts = {};
    return ::stat(sPath.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && !isOfKernel(sPath);
}

bool isLostLink(const std::string& sPath) {
    struct stat facts = {};
    return ::stat(sPath.c_str(), &facts) != 0 && ::lstat(sPath.c_str(), &facts) == 0 &&
           S_ISLNK(facts.st_mode);
}

} // namespace halvane::host::gdal
