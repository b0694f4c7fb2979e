#include "host/com/Geometry.h"

#include "base/Conversions.h"

#include <algorithm>
#include <limits>

namespace halvane::host::com {

namespace {

/// How many are asked for at once at most: the application makes a list of them.
constexpr std::size_t nMostPoints = 4096;

double numberIn(const Variant& item) {
    const Value vValue = halvane::com::toValue(item.get());
    if (isEmpty(vValue) || std::holds_alternative<Null>(vValue))
        return std::numeric_limits<double>::quiet_NaN();
    return numberOf(toView(vValue));
}

} // namespace

std::size_t ComGeometry::readPoints(std::int32_t lPart, std::int32_t lFirst,
                                    std::span<PointValues> aPoints) const {
    if (!object().has("ReadPoints"))
        return 0;
    const auto lCount = static_cast<std::int32_t>(std::min(aPoints.size(), nMostPoints));
    const Variant numbers = object().call("ReadPoints", {lPart, lFirst, lCount});
    const auto aNumbers = allItemsOf(context(), numbers.get());
    constexpr std::size_t nOfPoint = 4;
    const std::size_t nPoints = aNumbers.size() / nOfPoint;
    if (aNumbers.size() % nOfPoint != 0 || nPoints > static_cast<std::size_t>(lCount))
        throw object().mismatch("ReadPoints");
    for (std::size_t n = 0; n < nPoints; ++n) {
        const std::span aPoint(&aNumbers[n * nOfPoint], nOfPoint);
        aPoints[n] = {numberIn(aPoint[0]), numberIn(aPoint[1]), numberIn(aPoint[2]), numberIn(aPoint[3])};
    }
    return nPoints;
}

} // namespace halvane::host::com
