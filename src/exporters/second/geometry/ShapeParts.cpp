#include "exporters/second/geometry/ShapeParts.h"

#include "base/Failure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace halvane {

namespace {

using host::PartRole;
using host::PointValues;

bool isRing(PartRole role) {
    return role == PartRole::OuterRing || role == PartRole::InnerRing;
}

void requireFinite(const PointValues& point) {
    if (!std::isfinite(point.dX) || !std::isfinite(point.dY) || std::isinf(point.dZ))
        throw Failure(FailureNumber::TypeMismatch, "a shape has a coordinate that is no number");
}

} // namespace

class ShapeParts::Inspection {
public:
    void look(const PointValues& point) {
        requireFinite(point);
        bHeights = bHeights && !std::isnan(point.dZ);
        bMeasures = bMeasures && std::isfinite(point.dM);
        if (!bAny_)
            first = point;
        else // from the first point, so that small rings far from the origin keep their digits
            dTwiceArea +=
                (last.dX - first.dX) * (point.dY - first.dY) - (point.dX - first.dX) * (last.dY - first.dY);
        bAny_ = true;
        last = point;
    }
    [[nodiscard]] bool isClosed() const { return first.dX == last.dX && first.dY == last.dY; }

    PointValues first;
    PointValues last;
    double dTwiceArea = 0;
    bool bHeights = true;
    bool bMeasures = true;

private:
    bool bAny_ = false;
};

std::string_view nameOf(ShapeKind kind) noexcept {
    constexpr std::array<std::string_view, 7> names{
        "Point",   "MultiPoint",   "LineString",        "MultiLineString",
        "Polygon", "MultiPolygon", "GeometryCollection"};
    return names[static_cast<std::size_t>(kind)];
}

ShapeParts::ShapeParts(const host::GisGeometry& shape) : shape_(shape) {
    const std::int32_t lParts = shape.partCount();
    std::size_t nPoints = 0;
    for (std::int32_t lPart = 0; lPart < lParts && nPoints <= nMostInHand; ++lPart)
        nPoints += static_cast<std::size_t>(shape.pointCount(lPart));
    for (std::int32_t lPart = 0; lPart < lParts; ++lPart)
        add(lPart, nPoints <= nMostInHand);
}

void ShapeParts::add(std::int32_t lPart, bool bHold) {
    ShapePartFacts part{.lPart = lPart, .lCount = shape_.pointCount(lPart), .nInHand = inHand_.size()};
    if (part.lCount == 0)
        return;
    part.role = shape_.partRole(lPart);
    if (part.role == PartRole::InnerRing && (parts_.empty() || !isRing(parts_.back().role)))
        throw Failure(FailureNumber::TypeMismatch, "a shape has a hole without an area around it");
    if (bHold) {
        inHand_.resize(inHand_.size() + static_cast<std::size_t>(part.lCount));
        readFromHost(lPart, 0, std::span(inHand_).subspan(part.nInHand));
    }
    Inspection inspection;
    parts_.push_back(part); // so that its points can be read
    for (std::int32_t lDone = 0; lDone < part.lCount;) {
        const auto aPoints =
            bHold ? std::span<const PointValues>(inHand_).subspan(part.nInHand) : read(part, lDone);
        for (const PointValues& point : aPoints)
            inspection.look(point);
        lDone += static_cast<std::int32_t>(aPoints.size());
    }
    bHeights_ = bHeights_ && inspection.bHeights;
    bMeasures_ = bMeasures_ && inspection.bMeasures;
    if (!isRing(part.role))
        return;
    const double dSign = part.role == PartRole::OuterRing ? 1 : -1;
    parts_.back().bUnclosed = !inspection.isClosed();
    parts_.back().bBackwards = inspection.dTwiceArea * dSign < 0;
    parts_.back().dTwiceArea = dSign * std::abs(inspection.dTwiceArea);
}

std::span<const PointValues> ShapeParts::read(const ShapePartFacts& part, std::int32_t lDone) const {
    if (!inHand_.empty())
        return std::span(inHand_).subspan(part.nInHand, static_cast<std::size_t>(part.lCount));
    const std::int32_t lCount = std::min(part.lCount - lDone, lMostRead);
    read_.resize(lMostRead);
    const auto aPoints = std::span(read_).first(static_cast<std::size_t>(lCount));
    readFromHost(part.lPart, part.bBackwards ? part.lCount - lDone - lCount : lDone, aPoints);
    return aPoints;
}

void ShapeParts::readFromHost(std::int32_t lPart, std::int32_t lFirst, std::span<PointValues> aPoints) const {
    while (!aPoints.empty()) {
        std::size_t nRead = shape_.readPoints(lPart, lFirst, aPoints);
        if (nRead == 0) {
            const host::GisPointPtr pPoint = shape_.point(lPart, lFirst);
            aPoints.front() = {pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()};
            nRead = 1;
        }
        lFirst += static_cast<std::int32_t>(nRead);
        aPoints = aPoints.subspan(nRead);
    }
}

ShapeKind ShapeParts::kind() const {
    std::int64_t lPoints = 0;
    std::int64_t lLines = 0;
    std::int64_t lAreas = 0;
    for (const ShapePartFacts& part : parts_) {
        lPoints += part.role == PartRole::Points ? part.lCount : 0;
        lLines += part.role == PartRole::Line ? 1 : 0;
        lAreas += part.role == PartRole::OuterRing ? 1 : 0;
    }
    if ((lPoints > 0 && lLines > 0) || (lPoints + lLines > 0 && lAreas > 0))
        return ShapeKind::Collection;
    if (lAreas > 0)
        return lAreas == 1 ? ShapeKind::Polygon : ShapeKind::MultiPolygon;
    if (lLines > 0)
        return lLines == 1 ? ShapeKind::LineString : ShapeKind::MultiLineString;
    const bool bOne =
        lPoints == 1 && shape_.geometryType() != static_cast<std::int32_t>(host::ShapeType::Multipoint);
    return bOne ? ShapeKind::Point : ShapeKind::MultiPoint;
}

} // namespace halvane
