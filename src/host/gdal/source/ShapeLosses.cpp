#include "host/gdal/source/ShapeLosses.h"

#include <algorithm>
#include <utility>

namespace halvane::host::gdal {

void ShapeLosses::note(const std::string& sLayer, const std::string& sLocation, std::int64_t lId,
                       const std::string& sReason) {
    auto pLayer = std::find_if(layers_.begin(), layers_.end(), [&](const OfLayer& layer) {
        return layer.lost.sLayer == sLayer && layer.lost.sLocation == sLocation;
    });
    if (pLayer == layers_.end()) {
        layers_.push_back({{sLayer, sLocation, 0, sReason}, {}});
        pLayer = std::prev(layers_.end());
    }
    pLayer->ids.insert(lId);
    pLayer->lost.nCount = pLayer->ids.size();
}

std::vector<LostShapes> ShapeLosses::take() {
    std::vector<LostShapes> all;
    for (OfLayer& layer : std::exchange(layers_, {}))
        all.push_back(std::move(layer.lost));
    return all;
}

} // namespace halvane::host::gdal
