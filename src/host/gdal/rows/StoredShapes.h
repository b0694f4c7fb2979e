#pragma once

#include "host/gdal/source/HandlePool.h"

#include <memory>
#include <string>

namespace halvane::host::gdal {

/// What a format holds of the shape of a feature that came without one. Some drivers say nothing of a shape
/// that they cannot read, others say it at another time: there the data itself is looked at.
class StoredShapes {
public:
    StoredShapes() = default;
    StoredShapes(const StoredShapes&) = delete;
    StoredShapes& operator=(const StoredShapes&) = delete;
    virtual ~StoredShapes() = default;

    /// What is wrong with the shape that is stored; "" where none is.
    [[nodiscard]] virtual std::string fault(const OGRFeature& feature) = 0;
};

/// Nothing where the driver tells of each shape, with its feature, that it cannot read it.
/// @param layer outlives the result, which is used by one thread at a time with it.
[[nodiscard]] std::unique_ptr<StoredShapes> storedShapesOf(const LayerHandle& layer);

} // namespace halvane::host::gdal
