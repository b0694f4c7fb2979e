#include "host/gdal/rows/SelectionCursor.h"

#include "base/Failure.h"
#include "host/gdal/rows/Row.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Interruption.h"

#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace halvane::host::gdal {

GdalSelectionCursor::GdalSelectionCursor(LayerHandle layer, GdalFieldsPtr pFields,
                                         std::vector<std::int64_t> ids)
    : layer_(std::move(layer)), check_(layer_), pFields_(std::move(pFields)), ids_(std::move(ids)),
      bSequential_(layer_.layer().TestCapability(OLCRandomRead) == 0) {}

// One pass instead of one pass for each feature; only the selected ones are kept.
void GdalSelectionCursor::readAhead() {
    ErrorScope errors;
    const std::unordered_set<std::int64_t> wanted(ids_.begin(), ids_.end());
    OGRLayer& layer = layer_.layer();
    while (features_.size() < wanted.size()) {
        endIfInterrupted();
        OGRFeatureUniquePtr pFeature(layer.GetNextFeature());
        if (pFeature == nullptr) {
            errors.raiseIfFailed("Reading \"" + std::string(layer.GetName()) + "\" failed");
            return;
        }
        if (wanted.contains(pFeature->GetFID())) {
            RowFaultsPtr pFaults = check_.faultsOf(*pFeature, errors);
            const std::int64_t lId = pFeature->GetFID();
            features_.emplace(lId, std::pair(std::move(pFeature), std::move(pFaults)));
        }
        errors.clear();
    }
}

GisRowPtr GdalSelectionCursor::nextRow() {
    if (lNext_ == ids_.size())
        return nullptr;
    if (bSequential_ && lNext_ == 0)
        readAhead();
    const std::int64_t lId = ids_[lNext_++];
    OGRFeatureUniquePtr pFeature;
    RowFaultsPtr pFaults;
    if (!bSequential_) {
        const ErrorScope errors;
        pFeature.reset(layer_.layer().GetFeature(lId));
        pFaults = pFeature == nullptr ? nullptr : check_.faultsOf(*pFeature, errors);
    } else if (auto found = features_.extract(lId); !found.empty()) {
        std::tie(pFeature, pFaults) = std::move(found.mapped());
    }
    if (pFeature == nullptr) {
        throw Failure(FailureNumber::HostFailure, "\"" + std::string(layer_.layer().GetName()) +
                                                      "\" has no feature " + std::to_string(lId));
    }
    return std::make_shared<GdalRow>(pFields_, std::move(pFeature), std::move(pFaults));
}

} // namespace halvane::host::gdal
