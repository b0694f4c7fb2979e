#pragma once

#include "host/SpatialReference.h"

#include <ogr_spatialref.h>

namespace halvane::tests {

/// The bounds, in the system's own units, of the parallels that its area of use lies between, looked at every
/// twentieth of a degree; of a geographic system the area itself. The register tells the area: its editions
/// differ.
[[nodiscard]] host::XyDomain areaByHand(const OGRSpatialReference& reference);

} // namespace halvane::tests
