#pragma once

#include "host/gdal/map/MapDocumentModel.h"

#include <string>

namespace halvane::host::gdal {

/// Reads a map document. Nothing that it refers to is opened, and nothing outside the file is read.
/// @throws Failure: the file, the line, what is wrong there, and what is expected.
[[nodiscard]] MapDocumentModel readMapDocument(const std::string& sPath);

} // namespace halvane::host::gdal
