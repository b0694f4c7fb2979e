#pragma once

#include "base/Failure.h"
#include "host/gdal/rows/RowCheck.h"
#include "host/gdal/source/MissingRows.h"

#include <ogrsf_frmts.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// Features that follow one another in a layer.
struct FeatureBlock {
    std::vector<OGRFeatureUniquePtr> features;
    /// Of which features something could not be read, in their order: the feature's place here, and what.
    std::vector<std::pair<std::size_t, RowFaultsPtr>> faults;
    std::optional<Failure> failure; ///< of the reading, after these features
    bool bLast = false;             ///< nothing follows

    /// Nothing for most.
    [[nodiscard]] RowFaultsPtr faultsOf(std::size_t nFeature) const;
    void clear();
};

/// Fills a block with up to so many features, fewer where they are large: a block takes a few megabytes at
/// most, or one feature. Errors of the library go to the block's failure, behind `sContext`.
/// So does what is missing, after the last feature.
/// @param pCheck looks after what cannot be read; may be nothing. @param fnWanted asked before each feature:
/// whether to go on.
void readFeatures(OGRLayer& layer, std::size_t nMostRows, const std::string& sContext, FeatureBlock& block,
                  MissingRows& missing, RowCheck* pCheck, const std::function<bool()>& fnWanted);

/// Hands over the rest of a layer, feature by feature. @throws Failure behind the context, also when rows
/// were missing.
void forEachFeature(const LayerHandle& handle, const std::string& sContext,
                    const std::function<void(OGRFeature&, const ErrorScope&)>& take);

} // namespace halvane::host::gdal
