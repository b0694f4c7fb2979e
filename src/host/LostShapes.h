#pragma once

#include <cstddef>
#include <string>

namespace halvane::host {

/// Shapes of one layer that were asked for, are stored and could not be read.
struct LostShapes {
    std::string sLayer;
    std::string sLocation; ///< where the layer's data is; no password
    std::size_t nCount = 0;
    std::string sReason; ///< of the first
};

} // namespace halvane::host
