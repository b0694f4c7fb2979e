#pragma once

#include <string>

namespace halvane::host::gdal {

enum class FileKind {
    MapDocument,
    Project,      ///< of QGIS, plain or as an archive
    OtherMarkup,  ///< XML of another kind
    BrokenMarkup, ///< begins like XML, but is not well-formed up to its first element
    Other,
};

/// Whether a file is called as an archive of a project is (".qgz").
[[nodiscard]] bool isProjectArchive(const std::string& sPath);

/// What a file is by its first element.
[[nodiscard]] FileKind fileKindOf(const std::string& sPath);

} // namespace halvane::host::gdal
