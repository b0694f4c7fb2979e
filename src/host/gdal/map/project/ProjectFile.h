#pragma once

#include "host/gdal/facts/Markup.h"

#include <string>

namespace halvane::host::gdal {

/// The document of a project: of the file itself, or of the one file ".qgs" at the top of an archive. Nothing
/// that it names is opened; 128 MiB at most are read.
/// @throws Failure with what is wrong.
[[nodiscard]] MarkupDocument parseProject(const std::string& sPath);

} // namespace halvane::host::gdal
