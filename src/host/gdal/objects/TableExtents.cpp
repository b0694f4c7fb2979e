// Where the shapes of a table lie.

#include "host/Geometry.h"
#include "host/gdal/facts/TableDefinition.h"
#include "host/gdal/objects/TableData.h"
#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/rows/Filtering.h"
#include "host/gdal/rows/Geometry.h"
#include "host/gdal/rows/ShapeCheck.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <cmath>

namespace halvane::host::gdal {

namespace {

void widen(std::optional<MeasureDomain>& range, double dValue) {
    if (std::isnan(dValue))
        return;
    if (!range)
        range = MeasureDomain{dValue, dValue, 0, 0};
    range->dMin = std::min(range->dMin, dValue);
    range->dMax = std::max(range->dMax, dValue);
}

void widen(std::optional<XyDomain>& bounds, const OGRGeometry& shape) {
    if (shape.IsEmpty() != 0)
        return;
    OGREnvelope envelope;
    shape.getEnvelope(&envelope);
    if (!bounds)
        bounds = XyDomain{envelope.MinX, envelope.MinY, envelope.MaxX, envelope.MaxY, 0, 0, 0};
    bounds->dXMin = std::min(bounds->dXMin, envelope.MinX);
    bounds->dYMin = std::min(bounds->dYMin, envelope.MinY);
    bounds->dXMax = std::max(bounds->dXMax, envelope.MaxX);
    bounds->dYMax = std::max(bounds->dYMax, envelope.MaxY);
}

} // namespace

// No format tells heights, measures and what a filter leaves: every vertex is looked at.
void TableData::widen(Extents& extents, std::unique_ptr<OGRGeometry> pShape) {
    if (pShape == nullptr)
        return;
    gdal::widen(extents.xy, *pShape);
    if (pShape->Is3D() == 0 && pShape->IsMeasured() == 0)
        return;
    const GdalGeometry geometry(std::move(pShape));
    for (std::int32_t lPart = 0; lPart < geometry.partCount(); ++lPart) {
        for (std::int32_t lIndex = 0; lIndex < geometry.pointCount(lPart); ++lIndex) {
            const GisPointPtr pPoint = geometry.point(lPart, lIndex);
            gdal::widen(extents.z, pPoint->z());
            gdal::widen(extents.m, pPoint->m());
        }
    }
}

std::optional<XyDomain> TableData::fullExtent() {
    const LayerHandle handle = openLayer();
    const ErrorScope errors;
    OGREnvelope envelope;
    if (handle.layer().GetExtent(&envelope, 1) != OGRERR_NONE || envelope.IsInit() == 0)
        return std::nullopt;
    return XyDomain{envelope.MinX, envelope.MinY, envelope.MaxX, envelope.MaxY, 0, 0, 0};
}

const TableData::Extents& TableData::readExtents(const std::string& sFilter) {
    const auto pKnown = extents_.find(sFilter);
    if (pKnown != extents_.end())
        return pKnown->second;
    const LayerHandle handle = openLayer();
    setFilter(handle.layer(), Clause(sFilter, handle.layer().GetName()));
    ShapeCheck check(handle);
    Extents extents;
    std::int64_t lRows = 0;
    forEachFeature(handle, "Reading \"" + entry_.sName + "\" failed",
                   [&](OGRFeature& feature, const ErrorScope& errors) {
                       if (const LostShapePtr pLost = check.lostShapeOf(feature, errors))
                           pLost->note(feature.GetFID());
                       ++lRows;
                       widen(extents, std::unique_ptr<OGRGeometry>(feature.StealGeometry()));
                   });
    testEnd(lRows, sFilter.empty());
    return extents_.emplace(sFilter, extents).first->second;
}

const CoordinateGrid& TableData::grid() {
    if (!grid_) {
        const auto sDefinition = definitionOf(openLayer());
        grid_ = sDefinition ? gridOfDefinition(*sDefinition) : CoordinateGrid{};
    }
    return *grid_;
}

LayerExtents TableData::extentsOf(const std::shared_ptr<TableData>& pData, const std::string& sFilter) {
    const OGRwkbGeometryType type = pData->openLayer().layer().GetGeomType();
    LayerExtents extents;
    extents.grid = [pData] { return pData->grid(); };
    extents.xy = [pData, sFilter] {
        return sFilter.empty() ? pData->fullExtent() : pData->readExtents(sFilter).xy;
    };
    if (type == wkbUnknown || wkbHasZ(type) != 0)
        extents.z = [pData, sFilter] { return pData->readExtents(sFilter).z; };
    if (type == wkbUnknown || wkbHasM(type) != 0)
        extents.m = [pData, sFilter] { return pData->readExtents(sFilter).m; };
    return extents;
}

} // namespace halvane::host::gdal
