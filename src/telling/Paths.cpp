#include "telling/Paths.h"

#include "base/Text.h"

#include <algorithm>
#include <filesystem>

namespace halvane {

namespace fs = std::filesystem;

bool isUrl(std::string_view sText) {
    const std::string sLower = lowerCase(sText.substr(0, 8));
    return sLower.starts_with("http://") || sLower == "https://" || sLower == "file:///";
}

std::string absolutePath(std::string_view sText) {
    if (sText.empty() || isUrl(sText))
        return std::string(sText);
    std::string sSlashed(sText);
    std::replace(sSlashed.begin(), sSlashed.end(), '\\', '/');
    std::error_code error;
    // Who reads "\\" as "/" must not see that of the current folder's own name.
    constexpr bool bNamesHoldBackslashes = fs::path::preferred_separator == '/';
    if (bNamesHoldBackslashes && !sSlashed.starts_with('/') &&
        fs::current_path(error).string().find('\\') != std::string::npos)
        return "./" + fs::path(sSlashed).lexically_normal().string();
    const fs::path absolute = fs::absolute(sSlashed, error);
    if (error)
        return sSlashed;
    // Where folders are links, ".." cannot be resolved in the text alone.
    if (sSlashed.find("..") == std::string::npos)
        return absolute.lexically_normal().string();
    const fs::path resolved = fs::weakly_canonical(absolute, error);
    return (error ? absolute : resolved).string();
}

bool sameFile(const std::string& sLeft, const std::string& sRight) {
    std::error_code error;
    return fs::equivalent(sLeft, sRight, error) && !error;
}

} // namespace halvane
