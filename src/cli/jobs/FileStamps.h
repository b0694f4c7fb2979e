#pragma once

#include <cstdint>
#include <ctime>
#include <set>
#include <string>
#include <string_view>

namespace halvane::cli {

/// What files are at a moment: the same texts mean the same files, as far as sizes, times and, of small
/// files, contents tell.
class FileStamps {
public:
    /// @param except absolute: files that are never part of data, since exports write them.
    explicit FileStamps(std::set<std::string> except) : except_(std::move(except)) {}

    [[nodiscard]] static std::string ofText(std::string_view sText);
    /// @returns the stamp of a file or of its absence; "" where it cannot be told.
    [[nodiscard]] std::string ofFile(const std::string& sPath);
    /// The same of all files whose names begin as that of the file does, in its folder, or of all files in a
    /// folder at any depth.
    [[nodiscard]] std::string ofData(const std::string& sPath);

    /// Whether a file that was stamped has changed after a moment of the system's clock.
    [[nodiscard]] bool changedSince(const timespec& moment) const noexcept;

private:
    class Sum;
    void add(const std::string& sPath, Sum& sum);

    std::set<std::string> except_;
    timespec newest_{};
};

/// The moment as the times of files tell it.
[[nodiscard]] timespec nowForFiles() noexcept;

} // namespace halvane::cli
