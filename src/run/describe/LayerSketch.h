#pragma once

#include "host/Geometry.h"
#include "host/SpatialReference.h"
#include "host/Tables.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace halvane {

/// Where the shapes of a layer lie, and a drawing of some of them, in the layer's own coordinates.
struct LayerSketch {
    struct Line {
        std::vector<std::pair<double, double>> points; ///< one for a point
        bool bClosed = false;                          ///< a ring
    };

    std::optional<host::Bounds> bounds; ///< of all shapes; nothing where there are none
    std::vector<Line> lines;
};

/// Reads all shapes of a class once. @param lFeatures how many there are, as far as it is known.
/// @param nMostPoints of the drawing; 0: bounds alone.
/// @throws Failure of the host, DescriptionGivenUp when an orderly end is asked for.
[[nodiscard]] LayerSketch sketchLayer(host::GisFeatureClass& featureClass, std::int64_t lFeatures,
                                      std::size_t nMostPoints);

} // namespace halvane
