#include "host/gdal/rows/PickedFeatures.h"

#include "base/Failure.h"
#include "host/gdal/rows/RowCheck.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Interruption.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace halvane::host::gdal {

namespace {

struct PickedFeature {
    OGRFeatureUniquePtr pFeature; ///< nothing where the layer has none
    RowFaultsPtr pFaults;
};

/// Feature by feature: people select few.
class PickedFeatures : public FeatureSource {
public:
    PickedFeatures(LayerHandle layer, std::vector<std::int64_t> ids)
        : layer_(std::move(layer)), check_(layer_), ids_(std::move(ids)) {}

    void read(FeatureBlock& block) override {
        block.clear();
        block.bLast = nNext_ == ids_.size();
        if (block.bLast)
            return;
        const std::int64_t lId = ids_[nNext_++];
        PickedFeature picked = pick(lId);
        if (picked.pFeature == nullptr) {
            throw Failure(FailureNumber::HostFailure, "\"" + std::string(layer_.layer().GetName()) +
                                                          "\" has no feature " + std::to_string(lId));
        }
        if (picked.pFaults != nullptr)
            block.faults.emplace_back(0, std::move(picked.pFaults));
        block.features.push_back(std::move(picked.pFeature));
    }

protected:
    [[nodiscard]] virtual PickedFeature pick(std::int64_t lId) = 0;

    [[nodiscard]] OGRLayer& layer() const { return layer_.layer(); }
    [[nodiscard]] const std::vector<std::int64_t>& ids() const { return ids_; }
    [[nodiscard]] RowFaultsPtr faultsOf(const OGRFeature& feature, const ErrorScope& errors) {
        return check_.faultsOf(feature, errors);
    }

private:
    LayerHandle layer_;
    RowCheck check_;
    std::vector<std::int64_t> ids_;
    std::size_t nNext_ = 0;
};

/// Of formats that can jump to a feature.
class PickedByJumps final : public PickedFeatures {
public:
    using PickedFeatures::PickedFeatures;

private:
    PickedFeature pick(std::int64_t lId) override {
        const ErrorScope errors;
        PickedFeature picked{OGRFeatureUniquePtr(layer().GetFeature(lId)), nullptr};
        if (picked.pFeature != nullptr)
            picked.pFaults = faultsOf(*picked.pFeature, errors);
        return picked;
    }
};

/// One pass instead of one pass for each feature; only those of the list are kept.
class PickedInOnePass final : public PickedFeatures {
public:
    using PickedFeatures::PickedFeatures;

private:
    PickedFeature pick(std::int64_t lId) override {
        if (!std::exchange(bPassed_, true))
            pass();
        auto found = features_.extract(lId);
        return found.empty() ? PickedFeature{} : std::move(found.mapped());
    }

    void pass() {
        ErrorScope errors;
        const std::unordered_set<std::int64_t> wanted(ids().begin(), ids().end());
        while (features_.size() < wanted.size()) {
            endIfInterrupted();
            OGRFeatureUniquePtr pFeature(layer().GetNextFeature());
            if (pFeature == nullptr) {
                errors.raiseIfFailed("Reading \"" + std::string(layer().GetName()) + "\" failed");
                return;
            }
            if (wanted.contains(pFeature->GetFID())) {
                RowFaultsPtr pFaults = faultsOf(*pFeature, errors);
                const std::int64_t lId = pFeature->GetFID();
                features_.emplace(lId, PickedFeature{std::move(pFeature), std::move(pFaults)});
            }
            errors.clear();
        }
    }

    bool bPassed_ = false;
    std::unordered_map<std::int64_t, PickedFeature> features_;
};

} // namespace

std::unique_ptr<FeatureSource> pickedFeatures(LayerHandle layer, std::vector<std::int64_t> ids) {
    if (layer.layer().TestCapability(OLCRandomRead) != 0)
        return std::make_unique<PickedByJumps>(std::move(layer), std::move(ids));
    return std::make_unique<PickedInOnePass>(std::move(layer), std::move(ids));
}

} // namespace halvane::host::gdal
