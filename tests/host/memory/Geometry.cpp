#include "host/memory/Geometry.h"

#include "base/Failure.h"

#include <algorithm>
#include <cmath>

namespace halvane::host::memory {

namespace {

double lengthOf(const Part& part) {
    double dLength = 0;
    for (std::size_t i = 1; i < part.size(); ++i)
        dLength += std::hypot(part[i].dX - part[i - 1].dX, part[i].dY - part[i - 1].dY);
    return dLength;
}

} // namespace

double MemoryPoint::x() const {
    pass("GisPoint", "x");
    return vertex_.dX;
}

double MemoryPoint::y() const {
    pass("GisPoint", "y");
    return vertex_.dY;
}

double MemoryPoint::z() const {
    pass("GisPoint", "z");
    return vertex_.dZ;
}

double MemoryPoint::m() const {
    pass("GisPoint", "m");
    return vertex_.dM;
}

MemoryGeometryPtr MemoryGeometry::point(const Vertex& vertex) {
    return std::make_shared<MemoryGeometry>(ShapeType::Point, std::vector<Part>{{vertex}});
}

MemoryGeometryPtr MemoryGeometry::multipoint(Part aVertices) {
    std::vector<Part> aParts{std::move(aVertices)};
    return std::make_shared<MemoryGeometry>(ShapeType::Multipoint, std::move(aParts));
}

MemoryGeometryPtr MemoryGeometry::polyline(std::vector<Part> aParts) {
    return std::make_shared<MemoryGeometry>(ShapeType::Polyline, std::move(aParts));
}

MemoryGeometryPtr MemoryGeometry::polygon(std::vector<Part> aRings) {
    return std::make_shared<MemoryGeometry>(ShapeType::Polygon, std::move(aRings));
}

MemoryGeometryPtr MemoryGeometry::empty(ShapeType type) {
    return std::make_shared<MemoryGeometry>(type, std::vector<Part>());
}

std::int32_t MemoryGeometry::geometryType() const {
    pass("GisGeometry", "geometryType");
    return static_cast<std::int32_t>(type_);
}

double MemoryGeometry::length() const {
    pass("GisGeometry", "length");
    if (type_ == ShapeType::Point || type_ == ShapeType::Multipoint)
        return 0;
    double dLength = 0;
    for (const Part& aVertices : aParts_)
        dLength += lengthOf(aVertices);
    return dLength;
}

GisPointPtr MemoryGeometry::fromPoint() const {
    pass("GisGeometry", "fromPoint");
    if (aParts_.empty() || aParts_.front().empty())
        return nullptr;
    return std::make_shared<MemoryPoint>(aParts_.front().front(), script());
}

GisPointPtr MemoryGeometry::toPoint() const {
    pass("GisGeometry", "toPoint");
    if (aParts_.empty() || aParts_.back().empty())
        return nullptr;
    return std::make_shared<MemoryPoint>(aParts_.back().back(), script());
}

std::int32_t MemoryGeometry::partCount() const {
    pass("GisGeometry", "partCount");
    return static_cast<std::int32_t>(aParts_.size());
}

PartRole MemoryGeometry::partRole(std::int32_t lPart) const {
    pass("GisGeometry", "partRole");
    static_cast<void>(part(lPart));
    if (!aRoles_.empty())
        return aRoles_.at(static_cast<std::size_t>(lPart));
    if (type_ == ShapeType::Polygon)
        return lPart == 0 ? PartRole::OuterRing : PartRole::InnerRing;
    return GisGeometry::partRole(lPart);
}

std::int32_t MemoryGeometry::pointCount(std::int32_t lPart) const {
    pass("GisGeometry", "pointCount");
    return static_cast<std::int32_t>(part(lPart).size());
}

GisPointPtr MemoryGeometry::point(std::int32_t lPart, std::int32_t lIndex) const {
    pass("GisGeometry", "point");
    const Part& aVertices = part(lPart);
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aVertices.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return std::make_shared<MemoryPoint>(aVertices[static_cast<std::size_t>(lIndex)], script());
}

std::size_t MemoryGeometry::readPoints(std::int32_t lPart, std::int32_t lFirst,
                                       std::span<PointValues> aPoints) const {
    if (nAtHand_ == 0 || faults().isToFail("GisPoint"))
        return 0;
    pass("GisGeometry", "readPoints");
    const Part& aVertices = part(lPart);
    if (lFirst < 0 || static_cast<std::size_t>(lFirst) >= aVertices.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    const auto nFirst = static_cast<std::size_t>(lFirst);
    const std::size_t nCount = std::min({nAtHand_, aPoints.size(), aVertices.size() - nFirst});
    for (std::size_t i = 0; i < nCount; ++i) {
        const Vertex& vertex = aVertices[nFirst + i];
        aPoints[i] = {vertex.dX, vertex.dY, vertex.dZ, vertex.dM};
    }
    return nCount;
}

const Part& MemoryGeometry::part(std::int32_t lPart) const {
    if (lPart < 0 || static_cast<std::size_t>(lPart) >= aParts_.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return aParts_[static_cast<std::size_t>(lPart)];
}

} // namespace halvane::host::memory
