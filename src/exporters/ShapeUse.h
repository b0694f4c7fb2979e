#pragma once

#include "engine/ModExporter.h"

namespace halvane {

/// Whether anyone may look at the shapes of the rows that a repeated node is applied to.
[[nodiscard]] bool usesShapes(ExportState& state, const ControlNode& repeated);

} // namespace halvane
