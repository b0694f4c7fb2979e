#pragma once

#include <string>

namespace halvane::host::gdal {

enum class FileKind {
    MapDocument,
    OtherMarkup,  ///< XML of another kind
    BrokenMarkup, ///< begins like XML, but is not well-formed up to its first element
    Other,
};

/// What a file is by its first element.
[[nodiscard]] FileKind fileKindOf(const std::string& sPath);

} // namespace halvane::host::gdal
