#pragma once

#include "exporters/second/geometry/CoordinateText.h"
#include "exporters/second/geometry/ShapeParts.h"

#include <string>

namespace halvane {

// Shapes as one text, appended.

/// "POLYGON Z ((1 2 3, …))", with measures where all points have them.
void appendWkt(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers);
/// A geometry object.
void appendGeoJson(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers);
/// The data of a path; y runs downwards there.
void appendSvgPath(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers);

} // namespace halvane
