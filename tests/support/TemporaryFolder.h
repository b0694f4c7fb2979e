#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::test {

/// A new, empty folder that goes with its owner.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string sTemplate = (std::filesystem::temp_directory_path() / "halvane-test-XXXXXX").string();
        if (::mkdtemp(sTemplate.data()) == nullptr)
            throw std::filesystem::filesystem_error("mkdtemp",
                                                    std::error_code(errno, std::generic_category()));
        path_ = sTemplate;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::string file(std::string_view sName) const { return (path_ / sName).string(); }

    std::string write(std::string_view sName, std::string_view sContent) const {
        std::ofstream(file(sName), std::ios::binary) << sContent;
        return file(sName);
    }
    /// Nothing when there is no such file.
    [[nodiscard]] std::optional<std::string> read(std::string_view sName) const {
        std::ifstream stream(file(sName), std::ios::binary);
        if (!stream)
            return std::nullopt;
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

private:
    std::filesystem::path path_;
};

} // namespace halvane::test
