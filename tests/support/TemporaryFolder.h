#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace halvane::test {

/// A new, empty folder that goes with its owner.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        const auto parent = std::filesystem::temp_directory_path();
        do
            path_ = parent / ("halvane-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path_));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::string file(std::string_view sName) const { return (path_ / sName).string(); }

    /// The URL of a file in it.
    [[nodiscard]] std::string url(std::string_view sName) const {
        const std::string sFile = file(sName);
        return (sFile.starts_with('/') ? "file://" : "file:///") + sFile;
    }

    std::string write(std::string_view sName, std::string_view sContent) const {
        std::ofstream(path_ / sName, std::ios::binary) << sContent;
        return file(sName);
    }
    /// Nothing when there is no such file.
    [[nodiscard]] std::optional<std::string> read(std::string_view sName) const {
        std::ifstream stream(path_ / sName, std::ios::binary);
        if (!stream)
            return std::nullopt;
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

private:
    std::filesystem::path path_;
};

} // namespace halvane::test
