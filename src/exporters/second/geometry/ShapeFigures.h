#pragma once

#include "exporters/second/geometry/ShapeParts.h"
#include "host/SpatialReference.h"

#include <optional>

namespace halvane {

// Planar, in the units of the coordinates. Of a shape that is not empty.

/// Along lines and borders; nothing where there are none.
[[nodiscard]] std::optional<double> lengthOf(const ShapeParts& parts);
/// Without the holes; nothing where there are no areas.
[[nodiscard]] std::optional<double> areaOf(const ShapeParts& parts);
[[nodiscard]] host::Bounds boundsOf(const ShapeParts& parts);
/// Of the areas; where they have no extent, or there are none, of the lines; else of the points.
[[nodiscard]] host::PointValues centroidOf(const ShapeParts& parts);

} // namespace halvane
