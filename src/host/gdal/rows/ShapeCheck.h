#pragma once

#include "host/gdal/rows/StoredShapes.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/ShapeLosses.h"

#include <memory>

namespace halvane::host::gdal {

/// Finds the features of a layer whose shapes could not be read.
class ShapeCheck {
public:
    /// @param layer outlives the check, which is used by one thread at a time with it. Columns that are
    ///        ignored are so already.
    explicit ShapeCheck(const LayerHandle& layer);

    /// Nothing for a feature whose shape came, or for which none is stored.
    /// @param errors what was reported while it was read, and nothing else.
    [[nodiscard]] LostShapePtr lostShapeOf(const OGRFeature& feature, const ErrorScope& errors) {
        const bool bMissing = bWanted_ && feature.GetGeometryRef() == nullptr;
        return bMissing ? lostShape(feature, errors) : nullptr;
    }

private:
    [[nodiscard]] LostShapePtr lostShape(const OGRFeature& feature, const ErrorScope& errors);

    const LayerHandle& layer_;
    std::shared_ptr<ShapeLosses> pLosses_;
    bool bWanted_;
    bool bLooked_ = false;
    std::unique_ptr<StoredShapes> pStored_; // found when a shape is missed
};

} // namespace halvane::host::gdal
