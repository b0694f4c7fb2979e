#pragma once

#include "host/gdal/map/project/ProjectLayers.h"

#include <vector>

namespace halvane::host::gdal {

/// What a project says of the places of its layers: their lists of values, and the relations between them.
/// Layers in files of one folder that are related become datasets of that folder.
[[nodiscard]] std::vector<WorkspaceModel>
readProjectWorkspaces(const MarkupElement& root, ProjectLayers& layers, ProjectRemarks& remarks);

} // namespace halvane::host::gdal
