#include "exporters/second/geometry/ShapeFigures.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace halvane {

namespace {

using host::PartRole;
using host::PointValues;

/// Applies a function to each two points that follow each other.
template<class OfSegment>
void forEachSegment(const ShapeParts& parts, const ShapePartFacts& part, const OfSegment& ofSegment) {
    std::optional<PointValues> last;
    parts.forEachPoint(part, [&](const PointValues& point) {
        if (last)
            ofSegment(*last, point);
        last = point;
    });
}

double lengthOf(const PointValues& from, const PointValues& to) {
    return std::hypot(to.dX - from.dX, to.dY - from.dY);
}

/// Weighted positions, summed up from a place near to them, so that digits are kept far from the origin.
class Balance {
public:
    explicit Balance(const PointValues& origin) : origin_(origin) {}

    void add(double dWeight, double dX, double dY) {
        dWeight_ += dWeight;
        dX_ += dWeight * (dX - origin_.dX);
        dY_ += dWeight * (dY - origin_.dY);
    }
    [[nodiscard]] double weight() const { return dWeight_; }
    [[nodiscard]] PointValues centre() const {
        constexpr double dNone = std::numeric_limits<double>::quiet_NaN();
        return {origin_.dX + dX_ / dWeight_, origin_.dY + dY_ / dWeight_, dNone, dNone};
    }

private:
    PointValues origin_;
    double dWeight_ = 0;
    double dX_ = 0;
    double dY_ = 0;
};

PointValues firstPointOf(const ShapeParts& parts) {
    std::optional<PointValues> first;
    parts.forEachPoint(parts.all().front(), [&](const PointValues& point) { first = first.value_or(point); });
    return *first;
}

} // namespace

std::optional<double> lengthOf(const ShapeParts& parts) {
    std::optional<double> dLength;
    for (const ShapePartFacts& part : parts.all()) {
        if (part.role == PartRole::Points)
            continue;
        double dOfPart = 0;
        forEachSegment(parts, part, [&](const PointValues& from, const PointValues& to) {
            dOfPart += lengthOf(from, to);
        });
        dLength = dLength.value_or(0) + dOfPart;
    }
    return dLength;
}

std::optional<double> areaOf(const ShapeParts& parts) {
    std::optional<double> dArea;
    for (const ShapePartFacts& part : parts.all())
        if (part.role == PartRole::OuterRing || part.role == PartRole::InnerRing)
            dArea = dArea.value_or(0) + part.dTwiceArea / 2;
    return dArea;
}

host::Bounds boundsOf(const ShapeParts& parts) {
    constexpr double dFar = std::numeric_limits<double>::infinity();
    host::Bounds bounds{dFar, dFar, -dFar, -dFar};
    for (const ShapePartFacts& part : parts.all())
        parts.forEachPoint(part, [&](const PointValues& point) {
            bounds.dXMin = std::min(bounds.dXMin, point.dX);
            bounds.dYMin = std::min(bounds.dYMin, point.dY);
            bounds.dXMax = std::max(bounds.dXMax, point.dX);
            bounds.dYMax = std::max(bounds.dYMax, point.dY);
        });
    return bounds;
}

PointValues centroidOf(const ShapeParts& parts) {
    const PointValues origin = firstPointOf(parts);
    Balance areas(origin);
    Balance lines(origin);
    for (const ShapePartFacts& part : parts.all()) {
        if (part.role == PartRole::Points)
            continue;
        const bool bRing = part.role != PartRole::Line;
        forEachSegment(parts, part, [&](const PointValues& from, const PointValues& to) {
            if (bRing) // the triangle with the origin; holes run the other way, and count against it
                areas.add((from.dX - origin.dX) * (to.dY - origin.dY) -
                              (to.dX - origin.dX) * (from.dY - origin.dY),
                          (from.dX + to.dX + origin.dX) / 3, (from.dY + to.dY + origin.dY) / 3);
            lines.add(lengthOf(from, to), (from.dX + to.dX) / 2, (from.dY + to.dY) / 2);
        });
    }
    // What rounding leaves of an area without extent must not weigh.
    constexpr double dLeast = 1e-12;
    if (areas.weight() > dLeast * lines.weight() * lines.weight())
        return areas.centre();
    if (lines.weight() > 0)
        return lines.centre();
    Balance points(origin);
    for (const ShapePartFacts& part : parts.all())
        parts.forEachPoint(part, [&](const PointValues& point) { points.add(1, point.dX, point.dY); });
    return points.centre();
}

} // namespace halvane
