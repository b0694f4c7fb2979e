#pragma once

#include <ogr_spatialref.h>

#include <string>

namespace halvane::host::gdal {

/// A reference system in words: one keyword and its value a line, values in upper case so that none holds a
/// keyword, and no line without a value.
///
/// - Projection: the method; "UTM", "STATEPLANE", "GEOGRAPHIC", "GEOCENTRIC", "VERTICAL", "LOCAL"
/// - Zone: of UTM in its own coordinates; negative in the south
/// - Datum
/// - Spheroid
/// - Units: of the horizontal axes, none of a vertical system; "METERS" for the metre
/// - Fipszone: of the state plane systems of 1927 and 1983
/// - Zunits: of the vertical axis; "NO" without one
/// - Xshift: 0.0, since coordinates are handed on as they are stored
/// - Yshift: 0.0
/// - Parameters: name, value and unit of each parameter of the method, separated by "; "
[[nodiscard]] std::string describeReference(const OGRSpatialReference& reference);

} // namespace halvane::host::gdal
