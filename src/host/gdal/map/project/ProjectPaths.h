#pragma once

#include <string>

namespace halvane::host::gdal {

/// What a path of a project leads to.
struct ProjectPath {
    std::string sPath;   ///< absolute
    bool bMoved = false; ///< it is not where the project says, but beneath the project's folder
    std::string sWhyNot; ///< why there is nothing, with what was tried; "" where there is a file or a folder
};

/// Looks for a file or a folder where a project says it is, from the project's folder; where there is none,
/// for the ends of that path, the longest first, beneath the project's folder: what is sent elsewhere with a
/// project keeps its place beside it. Nothing is opened.
[[nodiscard]] ProjectPath projectPath(const std::string& sWritten, const std::string& sFolder);

} // namespace halvane::host::gdal
