#include "oracle/second/PlainShape.h"

#include "base/Failure.h"

#include <algorithm>
#include <cmath>

namespace halvane::oracle {

using host::PartRole;
using host::PointValues;

namespace {

/// Positive for what runs counter-clockwise.
double twiceSignedArea(const Points& aRing) {
    double dSum = 0;
    for (std::size_t n = 0; n + 1 < aRing.size(); ++n)
        dSum += aRing[n].dX * aRing[n + 1].dY - aRing[n + 1].dX * aRing[n].dY;
    return dSum;
}

double lengthOfRun(const Points& aRun) {
    double dSum = 0;
    for (std::size_t n = 0; n + 1 < aRun.size(); ++n)
        dSum += std::hypot(aRun[n + 1].dX - aRun[n].dX, aRun[n + 1].dY - aRun[n].dY);
    return dSum;
}

Points pointsOf(const host::GisGeometry& shape, std::int32_t lPart, const host::GisTransformation* pWay) {
    Points aPoints;
    for (std::int32_t i = 0; i < shape.pointCount(lPart); ++i) {
        const auto pPoint = shape.point(lPart, i);
        aPoints.push_back({pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()});
        if (pWay != nullptr)
            pWay->transform({&aPoints.back(), 1});
    }
    return aPoints;
}

/// @param aPoints perhaps without the first at the end.
Points ring(Points aPoints, bool bHole) {
    const auto closed = [](Points aOpen) {
        const PointValues first = aOpen.front();
        if (first.dX != aOpen.back().dX || first.dY != aOpen.back().dY)
            aOpen.push_back(first);
        return aOpen;
    };
    const double dArea = twiceSignedArea(closed(aPoints));
    if (bHole ? dArea > 0 : dArea < 0)
        std::reverse(aPoints.begin(), aPoints.end());
    return closed(aPoints);
}

std::string typeOf(const PlainShape& shape, bool bMultipoint) {
    if (shape.isEmpty())
        return {};
    const std::string& sFirst = shape.aMembers.front().sType;
    if (std::any_of(shape.aMembers.begin(), shape.aMembers.end(),
                    [&](const ShapeMember& member) { return member.sType != sFirst; }))
        return "GeometryCollection";
    return shape.aMembers.size() > 1 || (sFirst == "Point" && bMultipoint) ? "Multi" + sFirst : sFirst;
}

void addPart(PlainShape& shape, PartRole role, Points aPoints, bool& bInArea) {
    if (role == PartRole::Points)
        for (const PointValues& point : aPoints)
            shape.aMembers.push_back({"Point", {{point}}});
    else if (role == PartRole::Line)
        shape.aMembers.push_back({"LineString", {std::move(aPoints)}});
    else if (role == PartRole::OuterRing)
        shape.aMembers.push_back({"Polygon", {ring(std::move(aPoints), false)}});
    else
        shape.aMembers.back().aRuns.push_back(ring(std::move(aPoints), true));
    bInArea = role == PartRole::OuterRing || role == PartRole::InnerRing;
}

bool every(const PlainShape& shape, const std::function<bool(const PointValues&)>& holds) {
    for (const ShapeMember& member : shape.aMembers)
        for (const Points& aRun : member.aRuns)
            if (!std::all_of(aRun.begin(), aRun.end(), holds))
                return false;
    return true;
}

} // namespace

PlainShape plainShape(const host::GisGeometry& shape, const host::GisTransformation* pWay) {
    PlainShape plain;
    bool bInArea = false;
    for (std::int32_t lPart = 0; lPart < shape.partCount(); ++lPart) {
        if (shape.pointCount(lPart) == 0)
            continue;
        const PartRole role = shape.partRole(lPart);
        if (role == PartRole::InnerRing && !bInArea)
            throw Failure(FailureNumber::TypeMismatch, "a shape has a hole without an area around it");
        addPart(plain, role, pointsOf(shape, lPart, pWay), bInArea);
        ++plain.nParts;
    }
    plain.sType =
        typeOf(plain, shape.geometryType() == static_cast<std::int32_t>(host::ShapeType::Multipoint));
    plain.bHeights = every(plain, [](const PointValues& point) { return !std::isnan(point.dZ); });
    plain.bMeasures = every(plain, [](const PointValues& point) { return !std::isnan(point.dM); });
    return plain;
}

// ---- Figures ----

host::Bounds boundsOf(const PlainShape& shape) {
    const PointValues& any = shape.aMembers.front().aRuns.front().front();
    host::Bounds bounds{any.dX, any.dY, any.dX, any.dY};
    for (const ShapeMember& member : shape.aMembers)
        for (const Points& aRun : member.aRuns)
            for (const PointValues& point : aRun) {
                bounds.dXMin = std::min(bounds.dXMin, point.dX);
                bounds.dYMin = std::min(bounds.dYMin, point.dY);
                bounds.dXMax = std::max(bounds.dXMax, point.dX);
                bounds.dYMax = std::max(bounds.dYMax, point.dY);
            }
    return bounds;
}

std::optional<double> areaOf(const PlainShape& shape) {
    std::optional<double> dArea;
    for (const ShapeMember& member : shape.aMembers)
        if (member.sType == "Polygon")
            for (const Points& aRing : member.aRuns)
                dArea = dArea.value_or(0) + twiceSignedArea(aRing) / 2;
    return dArea;
}

std::optional<double> lengthOf(const PlainShape& shape) {
    std::optional<double> dLength;
    for (const ShapeMember& member : shape.aMembers)
        if (member.sType != "Point")
            for (const Points& aRun : member.aRuns)
                dLength = dLength.value_or(0) + lengthOfRun(aRun);
    return dLength;
}

namespace {

/// The mean of positions, each with its weight.
struct Mean {
    double dWeight = 0;
    double dX = 0;
    double dY = 0;

    void add(double dOne, double dOfX, double dOfY) {
        dWeight += dOne;
        dX += dOne * dOfX;
        dY += dOne * dOfY;
    }
    [[nodiscard]] PointValues value() const { return {dX / dWeight, dY / dWeight, 0, 0}; }
};

} // namespace

/// Of the areas, else of the lines, else of the points.
PointValues centroidOf(const PlainShape& shape) {
    Mean areas;
    Mean lines;
    Mean points;
    for (const ShapeMember& member : shape.aMembers)
        for (const Points& aRun : member.aRuns) {
            for (const PointValues& point : aRun)
                points.add(1, point.dX, point.dY);
            for (std::size_t n = 0; n + 1 < aRun.size(); ++n) {
                const PointValues& from = aRun[n];
                const PointValues& to = aRun[n + 1];
                lines.add(std::hypot(to.dX - from.dX, to.dY - from.dY), (from.dX + to.dX) / 2,
                          (from.dY + to.dY) / 2);
                if (member.sType == "Polygon") // the triangle with the origin
                    areas.add(from.dX * to.dY - to.dX * from.dY, (from.dX + to.dX) / 3,
                              (from.dY + to.dY) / 3);
            }
        }
    return areas.dWeight > 0 ? areas.value() : lines.dWeight > 0 ? lines.value() : points.value();
}

} // namespace halvane::oracle
