#pragma once

#include <ogr_geometry.h>

#include <vector>

namespace halvane::host::gdal {

/// The measures of the vertices of a line along a curve with arcs: those of the points that the data has, NaN
/// for the vertices in between. The library leaves all of them out, or takes them from memory that nobody has
/// written, as its versions differ. @returns nothing for a curve without measures.
[[nodiscard]] std::vector<double> measuresAlong(const OGRCurve& curve, const OGRLineString& line);

} // namespace halvane::host::gdal
