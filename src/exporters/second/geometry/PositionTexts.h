#pragma once

#include "exporters/second/geometry/CoordinateText.h"
#include "exporters/second/geometry/ShapeParts.h"

#include <string>

namespace halvane {

// Positions without the structure of a shape. They append, and fail for a shape that one list or position
// cannot tell.

/// "1 2 3 4", with heights "1 2 10 3 4 20".
void appendPosList(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers);
/// The same of one part.
void appendPositions(std::string& sText, const ShapeParts& parts, const ShapePartFacts& part,
                     const CoordinateText& numbers);
/// "1 2" of a point.
void appendPos(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers);
/// "1,2 3,4".
void appendCoordinates(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers);
/// The same of one part.
void appendTuples(std::string& sText, const ShapeParts& parts, const ShapePartFacts& part,
                  const CoordinateText& numbers);

} // namespace halvane
