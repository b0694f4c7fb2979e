#pragma once

#include "host/gdal/rows/FeatureSource.h"
#include "host/gdal/source/HandlePool.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace halvane::host::gdal {

/// Features by their identifiers, in the order of the list. Reading fails for each that the layer has not.
[[nodiscard]] std::unique_ptr<FeatureSource> pickedFeatures(LayerHandle layer, std::vector<std::int64_t> ids);

} // namespace halvane::host::gdal
