#pragma once

#include "run/describe/MapDescription.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// A layer in a drawing.
struct DrawnLayer {
    const LayerSketch* pSketch; ///< with bounds
    std::size_t nColour;        ///< of the page's colours
};

/// Layers of one reference as SVG, in a frame around them all; "" without any.
/// @param sTitle what it shows, for those who do not see it.
[[nodiscard]] std::string drawLayers(const std::vector<DrawnLayer>& layers, bool bDegrees,
                                     std::string_view sTitle);

/// Relationship classes as SVG: origins on the left, destinations on the right; "" without any.
[[nodiscard]] std::string drawRelationships(const std::vector<const RelationshipDescription*>& relationships);

} // namespace halvane
