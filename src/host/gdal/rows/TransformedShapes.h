#pragma once

#include "host/SpatialReference.h"
#include "host/gdal/facts/Fields.h"

namespace halvane::host::gdal {

/// Moves the vertices of shapes to another reference; empty for no transformation.
[[nodiscard]] ShapeChange transformationOfShapes(GisTransformationPtr pTransformation);

} // namespace halvane::host::gdal
