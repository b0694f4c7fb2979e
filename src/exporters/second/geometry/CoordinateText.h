#pragma once

#include "engine/second/ValueFormat.h"
#include "host/Geometry.h"

#include <cstdint>
#include <string>

namespace halvane {

/// How the numbers of positions are written.
struct CoordinateText {
    std::int32_t lDecimals = 0; ///< at most; 0: as many as 15 significant digits have
    bool bYFirst = false;
    const ValueFormat* pFormat = nullptr; ///< of numbers, instead of the decimals

    void appendNumber(std::string& sText, double dValue) const;
    /// @param bHeight whether z is written, too.
    void appendPosition(std::string& sText, const host::PointValues& point, char cBetween,
                        bool bHeight) const;
};

} // namespace halvane
