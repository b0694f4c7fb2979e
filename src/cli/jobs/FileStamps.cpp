#include "cli/jobs/FileStamps.h"

#include "base/Text.h"
#include "io/FileReading.h"

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <tuple>

namespace halvane::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestRead = 64U << 10U; // whose content counts instead of its time
constexpr std::size_t mostFiles = 20'000;       // of a folder

bool isLater(const timespec& left, const timespec& right) noexcept {
    return std::tie(left.tv_sec, left.tv_nsec) > std::tie(right.tv_sec, right.tv_nsec);
}

/// A file in writing, which gets its name when it is whole.
bool isUnfinished(const fs::path& path) {
    const std::string sName = path.filename().string();
    return sName.starts_with('.') && sName.ends_with(".tmp");
}

} // namespace

/// 64 bits of FNV-1a: stays the same with every version of a library, and nobody gains by a collision.
class FileStamps::Sum {
public:
    void add(std::string_view sBytes) noexcept {
        for (const char c : sBytes) {
            nSum_ ^= static_cast<unsigned char>(c);
            nSum_ *= 0x100000001B3U;
        }
    }
    void giveUp() noexcept { bKnown_ = false; }
    [[nodiscard]] std::string text() const { return bKnown_ ? fmt::format("{:016x}", nSum_) : ""; }

private:
    std::uint64_t nSum_ = 0xCBF29CE484222325U;
    bool bKnown_ = true;
};

void FileStamps::add(const std::string& sPath, Sum& sum) {
    struct stat status = {};
    if (::stat(sPath.c_str(), &status) != 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            sum.giveUp();
        sum.add("none\n");
        return;
    }
    if (isLater(status.st_ctim, newest_))
        newest_ = status.st_ctim;
    sum.add(fmt::format("{} ", status.st_size));
    std::string sContent;
    if (!S_ISREG(status.st_mode))
        sum.giveUp();
    else if (static_cast<std::uint64_t>(status.st_size) > largestRead)
        sum.add(fmt::format("{}.{}\n", status.st_mtim.tv_sec, status.st_mtim.tv_nsec));
    else if (io::readFile(sPath, largestRead, sContent))
        sum.giveUp();
    sum.add(sContent);
}

std::string FileStamps::ofText(std::string_view sText) {
    Sum sum;
    sum.add(sText);
    return sum.text();
}

std::string FileStamps::ofFile(const std::string& sPath) {
    Sum sum;
    add(sPath, sum);
    return sum.text();
}

std::string FileStamps::ofData(const std::string& sPath) {
    const fs::path path(sPath);
    std::error_code error;
    const bool bFolder = fs::is_directory(path, error);
    const std::string sStem = upperCase(path.stem().string());
    std::set<std::string> files;
    if (!bFolder)
        files.insert(sPath);
    const auto take = [&](const fs::directory_entry& entry) {
        const bool bPart = bFolder || upperCase(entry.path().filename().string()).starts_with(sStem);
        if (bPart && !entry.is_directory(error) && !isUnfinished(entry.path()) &&
            !except_.contains(entry.path().string()))
            files.insert(entry.path().string());
    };
    Sum sum;
    fs::recursive_directory_iterator at(bFolder ? path : path.parent_path(), error);
    for (; !error && at != fs::recursive_directory_iterator(); at.increment(error)) {
        if (!bFolder)
            at.disable_recursion_pending();
        take(*at);
        if (files.size() > mostFiles)
            break;
    }
    if ((error && bFolder) || files.size() > mostFiles)
        sum.giveUp();
    for (const auto& sFile : files) {
        sum.add(sFile + "\n");
        add(sFile, sum);
    }
    return sum.text();
}

bool FileStamps::changedSince(const timespec& moment) const noexcept {
    return isLater(newest_, moment);
}

timespec nowForFiles() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return now;
}

} // namespace halvane::cli
