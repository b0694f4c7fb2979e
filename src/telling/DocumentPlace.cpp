#include "telling/DocumentPlace.h"

#include <fmt/format.h>

#include <filesystem>

namespace halvane {

namespace fs = std::filesystem;

std::string whyNotInFolder(const std::string& sFolder) {
    std::error_code error;
    return fs::is_directory(sFolder, error)
               ? std::string()
               : fmt::format("there is no folder \"{}\"; create it first", sFolder);
}

std::string whyNotInPlace(const std::string& sPath) {
    std::error_code error;
    const auto status = fs::status(sPath, error);
    if (fs::is_directory(status))
        return fmt::format("\"{}\" is a folder; add the name of a file", sPath);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return fmt::format("\"{}\" is not a regular file; give another name", sPath);
    return {};
}

} // namespace halvane
