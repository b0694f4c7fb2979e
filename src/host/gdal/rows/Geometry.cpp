#include "host/gdal/rows/Geometry.h"

#include "base/Failure.h"
#include "host/gdal/rows/ArcMeasures.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace halvane::host::gdal {

namespace {

constexpr double dNone = std::numeric_limits<double>::quiet_NaN();

PointValues valuesOf(const OGRPoint& point) {
    return {point.getX(), point.getY(), point.Is3D() != 0 ? point.getZ() : dNone,
            point.IsMeasured() != 0 ? point.getM() : dNone};
}

int countOf(const OGRSimpleCurve& curve) {
    return curve.getNumPoints();
}
int countOf(const OGRMultiPoint& points) {
    return points.getNumGeometries();
}
int countOf(const std::vector<const OGRPoint*>& points) {
    return static_cast<int>(points.size());
}
int countOf(const OGRPoint&) {
    return 1;
}

template<class ValuesAt>
void fill(std::span<PointValues> aPoints, int lFirst, const ValuesAt& valuesAt) {
    for (PointValues& values : aPoints)
        values = valuesAt(lFirst++);
}

void readFrom(const OGRSimpleCurve& curve, int lFirst, std::span<PointValues> aPoints) {
    const bool bZ = curve.Is3D() != 0;
    const bool bMeasured = curve.IsMeasured() != 0;
    fill(aPoints, lFirst, [&](int lIndex) {
        return PointValues{curve.getX(lIndex), curve.getY(lIndex), bZ ? curve.getZ(lIndex) : dNone,
                           bMeasured ? curve.getM(lIndex) : dNone};
    });
}
void readFrom(const OGRMultiPoint& points, int lFirst, std::span<PointValues> aPoints) {
    fill(aPoints, lFirst, [&](int lIndex) { return valuesOf(*points.getGeometryRef(lIndex)); });
}
void readFrom(const std::vector<const OGRPoint*>& points, int lFirst, std::span<PointValues> aPoints) {
    fill(aPoints, lFirst, [&](int lIndex) { return valuesOf(*points[static_cast<std::size_t>(lIndex)]); });
}
void readFrom(const OGRPoint& point, int lFirst, std::span<PointValues> aPoints) {
    fill(aPoints, lFirst, [&](int) { return valuesOf(point); });
}

double lengthOf(const OGRGeometry& geometry);

double ringsLength(const OGRCurvePolygon& polygon) {
    double dLength = 0;
    for (const OGRCurve* pRing : polygon)
        dLength += pRing->get_Length();
    return dLength;
}

double lengthOf(const OGRGeometry& geometry) {
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (OGR_GT_IsCurve(type) != 0)
        return geometry.toCurve()->get_Length();
    if (OGR_GT_IsSubClassOf(type, wkbCurvePolygon) != 0)
        return ringsLength(*geometry.toCurvePolygon());
    double dLength = 0;
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0)
        for (const OGRGeometry* pMember : *geometry.toGeometryCollection())
            dLength += lengthOf(*pMember);
    else if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface) != 0)
        for (const OGRPolygon* pPatch : *geometry.toPolyhedralSurface())
            dLength += ringsLength(*pPatch);
    return dLength;
}

} // namespace

GdalGeometry::GdalGeometry(std::unique_ptr<OGRGeometry> pGeometry) : pGeometry_(std::move(pGeometry)) {}

int GdalGeometry::Part::count() const {
    return std::visit([](const auto* pSource) { return countOf(*pSource); }, source);
}

void GdalGeometry::Part::read(int lFirst, std::span<PointValues> aPoints) const {
    std::visit([&](const auto* pSource) { readFrom(*pSource, lFirst, aPoints); }, source);
    for (std::size_t n = 0; pMeasures != nullptr && n < aPoints.size(); ++n)
        aPoints[n].dM = (*pMeasures)[static_cast<std::size_t>(lFirst) + n];
}

GisPointPtr GdalGeometry::Part::at(int lIndex) const {
    PointValues values;
    read(lIndex, {&values, 1});
    return std::make_shared<GdalPoint>(values.dX, values.dY, values.dZ, values.dM);
}

void GdalGeometry::collectCurve(const OGRCurve& curve, PartRole role, std::vector<Part>& parts) const {
    if (curve.IsEmpty() != 0)
        return;
    if (curve.hasCurveGeometry() == 0) {
        parts.push_back({curve.toSimpleCurve(), role});
        return;
    }
    std::unique_ptr<OGRLineString> pLine{curve.CurveToLine()};
    if (pLine == nullptr)
        return;
    Part part{pLine.get(), role};
    if (auto measures = measuresAlong(curve, *pLine); !measures.empty()) {
        measures_.push_back(std::make_unique<std::vector<double>>(std::move(measures)));
        part.pMeasures = measures_.back().get();
    }
    lines_.push_back(std::move(pLine));
    parts.push_back(part);
}

void GdalGeometry::collectPoints(const OGRMultiPoint& points, std::vector<Part>& parts) const {
    const auto isEmpty = [](const OGRPoint* pPoint) { return pPoint->IsEmpty() != 0; };
    if (std::none_of(points.begin(), points.end(), isEmpty)) {
        parts.push_back({&points});
        return;
    }
    auto pOthers = std::make_unique<Points>();
    std::remove_copy_if(points.begin(), points.end(), std::back_inserter(*pOthers), isEmpty);
    parts.push_back({pOthers.get()});
    points_.push_back(std::move(pOthers));
}

void GdalGeometry::collectArea(const OGRCurvePolygon& area, std::vector<Part>& parts) const {
    PartRole role = PartRole::OuterRing;
    for (const OGRCurve* pRing : area) {
        const std::size_t nBefore = parts.size();
        collectCurve(*pRing, role, parts);
        if (parts.size() > nBefore)
            role = PartRole::InnerRing;
    }
}

void GdalGeometry::collect(const OGRGeometry& geometry, std::vector<Part>& parts) const {
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (geometry.IsEmpty() != 0)
        return;
    if (type == wkbPoint)
        parts.push_back({geometry.toPoint()});
    else if (type == wkbMultiPoint)
        collectPoints(*geometry.toMultiPoint(), parts);
    else if (OGR_GT_IsCurve(type) != 0)
        collectCurve(*geometry.toCurve(), PartRole::Line, parts);
    else if (OGR_GT_IsSubClassOf(type, wkbCurvePolygon) != 0)
        collectArea(*geometry.toCurvePolygon(), parts);
    else if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface) != 0)
        for (const OGRPolygon* pPatch : *geometry.toPolyhedralSurface())
            collectArea(*pPatch, parts);
    else if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0)
        for (const OGRGeometry* pMember : *geometry.toGeometryCollection())
            collect(*pMember, parts);
}

const std::vector<GdalGeometry::Part>& GdalGeometry::parts() const {
    if (!parts_) {
        const ErrorScope errors;
        std::vector<Part> all;
        collect(*pGeometry_, all);
        parts_ = std::move(all);
    }
    return *parts_;
}

const GdalGeometry::Part& GdalGeometry::part(std::int32_t lPart) const {
    if (lPart < 0 || lPart >= partCount())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return parts()[static_cast<std::size_t>(lPart)];
}

std::int32_t GdalGeometry::geometryType() const {
    return static_cast<std::int32_t>(shapeTypeOf(*pGeometry_));
}

double GdalGeometry::length() const {
    return lengthOf(*pGeometry_);
}

GisPointPtr GdalGeometry::fromPoint() const {
    return parts().empty() ? nullptr : parts().front().at(0);
}

GisPointPtr GdalGeometry::toPoint() const {
    return parts().empty() ? nullptr : parts().back().at(parts().back().count() - 1);
}

std::int32_t GdalGeometry::partCount() const {
    return static_cast<std::int32_t>(parts().size());
}

std::int32_t GdalGeometry::pointCount(std::int32_t lPart) const {
    return part(lPart).count();
}

GisPointPtr GdalGeometry::point(std::int32_t lPart, std::int32_t lIndex) const {
    const Part& found = part(lPart);
    requireVertex(found, lIndex);
    return found.at(lIndex);
}

std::size_t GdalGeometry::readPoints(std::int32_t lPart, std::int32_t lFirst,
                                     std::span<PointValues> aPoints) const {
    const Part& found = part(lPart);
    requireVertex(found, lFirst);
    const std::size_t nRead = std::min(aPoints.size(), static_cast<std::size_t>(found.count() - lFirst));
    found.read(lFirst, aPoints.first(nRead));
    return nRead;
}

void GdalGeometry::requireVertex(const Part& part, std::int32_t lIndex) {
    if (lIndex < 0 || lIndex >= part.count())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
}

ShapeType shapeTypeOf(const OGRGeometry& geometry) {
    if (wkbFlatten(geometry.getGeometryType()) != wkbGeometryCollection)
        return shapeTypeOf(geometry.getGeometryType());
    std::optional<ShapeType> common;
    for (const OGRGeometry* pMember : *geometry.toGeometryCollection()) {
        if (pMember->IsEmpty() != 0)
            continue;
        const ShapeType type = shapeTypeOf(*pMember);
        if (common.value_or(type) != type)
            return ShapeType::Null;
        common = type;
    }
    return common.value_or(ShapeType::Null);
}

ShapeType shapeTypeOf(OGRwkbGeometryType type) {
    switch (wkbFlatten(type)) {
    case wkbPoint:
        return ShapeType::Point;
    case wkbMultiPoint:
        return ShapeType::Multipoint;
    case wkbLineString:
    case wkbMultiLineString:
    case wkbCircularString:
    case wkbCompoundCurve:
    case wkbMultiCurve:
    case wkbCurve:
        return ShapeType::Polyline;
    case wkbPolygon:
    case wkbMultiPolygon:
    case wkbCurvePolygon:
    case wkbMultiSurface:
    case wkbSurface:
    case wkbPolyhedralSurface:
    case wkbTIN:
    case wkbTriangle:
        return ShapeType::Polygon;
    default:
        return ShapeType::Null;
    }
}

} // namespace halvane::host::gdal
