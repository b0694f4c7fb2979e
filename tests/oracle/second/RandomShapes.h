#pragma once

#include "host/Geometry.h"
#include "oracle/Random.h"

namespace halvane::oracle {

/// A shape as data holds them: lines of several points, borders that end where they began, in either
/// direction, with and without holes; now and then points, lines and areas in one.
[[nodiscard]] host::GisGeometryPtr soundShape(Random& random, host::ShapeType type);

} // namespace halvane::oracle
