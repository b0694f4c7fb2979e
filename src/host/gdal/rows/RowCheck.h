#pragma once

#include "host/gdal/rows/NumberCheck.h"
#include "host/gdal/rows/ShapeCheck.h"

#include <memory>
#include <vector>

namespace halvane::host::gdal {

/// What of one row could not be read.
struct RowFaults {
    LostShapePtr pLostShape;     ///< nothing where the shape could
    std::vector<int> cutNumbers; ///< columns whose numbers their types cannot hold
};
using RowFaultsPtr = std::shared_ptr<const RowFaults>;

/// Finds what of the rows of a layer cannot be read.
class RowCheck {
public:
    /// @param layer outlives the check, which is used by one thread at a time with it. Columns that are
    ///        ignored are so already.
    explicit RowCheck(const LayerHandle& layer) : shapes_(layer), numbers_(layer) {}

    /// Nothing for most. @param errors what was reported while the feature was read, and nothing else.
    [[nodiscard]] RowFaultsPtr faultsOf(const OGRFeature& feature, const ErrorScope& errors) {
        LostShapePtr pLostShape = shapes_.lostShapeOf(feature, errors);
        std::vector<int> cutNumbers = numbers_.cutNumbersOf(feature, errors);
        return pLostShape == nullptr && cutNumbers.empty()
                   ? nullptr
                   : std::make_shared<const RowFaults>(
                         RowFaults{std::move(pLostShape), std::move(cutNumbers)});
    }

private:
    ShapeCheck shapes_;
    NumberCheck numbers_;
};

} // namespace halvane::host::gdal
