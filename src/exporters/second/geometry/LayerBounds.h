#pragma once

#include "engine/ModExporter.h"
#include "engine/second/NodeGeometry.h"

#include <optional>

namespace halvane {

/// Where the features of the current layer lie that a "Feature" node would write: one pass over them, which
/// is kept for the export. A layer without shapes has no bounds.
/// @throws Failure when they cannot be read, or have no place in the coordinates asked for.
[[nodiscard]] std::optional<host::Bounds> boundsOfCurrentLayer(ExportState& state, const NodeSpace& space);

} // namespace halvane
