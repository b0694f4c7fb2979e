#include "host/gdal/rows/ArcMeasures.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace halvane::host::gdal {

namespace {

struct MeasuredPoint {
    double dX = 0;
    double dY = 0;
    double dM = 0;
};

void addPoints(const OGRCurve& curve, std::vector<MeasuredPoint>& points) {
    if (wkbFlatten(curve.getGeometryType()) == wkbCompoundCurve) {
        for (const OGRCurve* pMember : *curve.toCompoundCurve())
            addPoints(*pMember, points);
        return;
    }
    const OGRSimpleCurve& simple = *curve.toSimpleCurve();
    // A member begins where the one before it ends.
    for (int lIndex = points.empty() ? 0 : 1; lIndex < simple.getNumPoints(); ++lIndex)
        points.push_back({simple.getX(lIndex), simple.getY(lIndex), simple.getM(lIndex)});
}

} // namespace

std::vector<double> measuresAlong(const OGRCurve& curve, const OGRLineString& line) {
    // An arc's middle point is seldom a vertex of the line; its ends always are.
    constexpr std::size_t nMostLeftOut = 1;
    if (curve.IsMeasured() == 0)
        return {};
    std::vector<MeasuredPoint> points;
    addPoints(curve, points);
    std::vector<double> measures(static_cast<std::size_t>(line.getNumPoints()),
                                 std::numeric_limits<double>::quiet_NaN());
    std::size_t nNext = 0;
    for (int lIndex = 0; lIndex < line.getNumPoints(); ++lIndex) {
        const std::size_t nEnd = std::min(nNext + nMostLeftOut + 1, points.size());
        for (std::size_t nPoint = nNext; nPoint < nEnd; ++nPoint) {
            if (points[nPoint].dX == line.getX(lIndex) && points[nPoint].dY == line.getY(lIndex)) {
                measures[static_cast<std::size_t>(lIndex)] = points[nPoint].dM;
                nNext = nPoint + 1;
                break;
            }
        }
    }
    return measures;
}

} // namespace halvane::host::gdal
