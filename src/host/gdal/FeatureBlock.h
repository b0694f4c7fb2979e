#pragma once

#include "collection/Failure.h"

#include <ogrsf_frmts.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Features that follow one another in a layer.
struct FeatureBlock {
    std::vector<OGRFeatureUniquePtr> features;
    std::optional<Failure> failure; ///< of the reading, after these features
    bool bLast = false;             ///< nothing follows
};

/// Fills a block with up to so many features, fewer where they are large: a block takes a few megabytes at
/// most, or one feature. Errors of the library go to the block's failure, behind `sContext`.
/// @param fnWanted asked before each feature: whether to go on.
void readFeatures(OGRLayer& layer, std::size_t lMostRows, const std::string& sContext, FeatureBlock& block,
                  const std::function<bool()>& fnWanted);

} // namespace halvane::host::gdal
