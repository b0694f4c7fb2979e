#pragma once

#include "host/gdal/map/project/ProjectLayers.h"

#include <string>
#include <vector>

namespace halvane::host::gdal {

/// The maps of a project: the one of its window, which is shown; those of further windows; those of its
/// layouts.
/// @param sStem what the first is called where the project has no title.
/// @throws Failure where they would take too much memory together.
[[nodiscard]] std::vector<MapModel> readProjectMaps(const MarkupElement& root, const std::string& sStem,
                                                    ProjectLayers& layers, ProjectReferences& references,
                                                    ProjectRemarks& remarks);

} // namespace halvane::host::gdal
