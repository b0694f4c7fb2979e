#pragma once

#include "host/LostShapes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace halvane::host::gdal {

/// What the readers of one host lost: a shape counts once, however often it is asked for. One thread only.
class ShapeLosses {
public:
    void note(const std::string& sLayer, const std::string& sLocation, std::int64_t lId,
              const std::string& sReason);
    /// All since the last call, in the order in which the layers came.
    [[nodiscard]] std::vector<LostShapes> take();

private:
    struct OfLayer {
        LostShapes lost;
        std::unordered_set<std::int64_t> ids;
    };
    std::vector<OfLayer> layers_;
};

/// The shape of one row, which could not be read.
struct LostShape {
    std::shared_ptr<ShapeLosses> pLosses;
    std::string sLayer;
    std::string sLocation;
    std::string sReason;

    /// To be told when somebody asks for the shape.
    void note(std::int64_t lId) const { pLosses->note(sLayer, sLocation, lId, sReason); }
};
using LostShapePtr = std::shared_ptr<const LostShape>;

} // namespace halvane::host::gdal
