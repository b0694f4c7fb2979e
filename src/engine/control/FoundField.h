#pragma once

#include "xml/dom/Dom.h"

#include <cstdint>

namespace halvane {

/// A field that a control node names, as it was last found.
struct FoundField {
    std::uint64_t nFields = 0; ///< the serial number of the fields it was found in
    std::uint64_t nGeneration = 0;
    const dom::NodeData* pTagNode = nullptr; ///< the current tag node at that time
    std::int32_t lIndex = -1;
    std::int32_t lTypeCode = -1;
};

} // namespace halvane
