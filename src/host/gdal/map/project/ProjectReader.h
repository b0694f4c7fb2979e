#pragma once

#include "host/gdal/map/MapDocumentModel.h"

#include <string>

namespace halvane::host::gdal {

/// Reads a QGIS project (".qgs", ".qgz") as a map document. Data is looked for, and not opened.
/// @param bConnections whether the databases of servers that it names may be reached.
/// @throws Failure: the file, and what is wrong with it.
[[nodiscard]] MapDocumentModel readProject(const std::string& sPath, bool bConnections);

} // namespace halvane::host::gdal
