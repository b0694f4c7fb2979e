#include "host/gdal/objects/Table.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/TableDefinition.h"
#include "host/gdal/objects/Places.h"
#include "host/gdal/objects/Subtypes.h"
#include "host/gdal/objects/Workspace.h"
#include "host/gdal/rows/Clause.h"
#include "host/gdal/rows/Cursor.h"
#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/rows/RowCount.h"
#include "host/gdal/rows/SelectionCursor.h"
#include "host/gdal/rows/ShapeCheck.h"
#include "host/gdal/rows/StoredRows.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_set>

namespace halvane::host::gdal {

TableData::TableData(std::shared_ptr<HandlePool> pPool, DatasetEntry entry)
    : pPool_(std::move(pPool)), entry_(std::move(entry)) {}

GdalFieldsPtr TableData::fields() {
    GdalFieldsPtr pFields = pFields_.lock();
    if (pFields == nullptr) {
        LayerHandle handle = openLayer();
        if (handle.layer().GetLayerDefn()->GetFieldCount() == 0)
            testReadable();
        pFields = fieldsOf(std::move(handle));
        pFields_ = pFields;
        pPool_->keepAWhile(pFields);
    }
    return pFields;
}

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
    setFilter(handle.layer(), sFilter);
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

// A driver tells once for each handle that it cannot read a definition, and yields no row from then on.
void TableData::testReadable() {
    if (bReadable_)
        return;
    MissingRows missing;
    const GDALDatasetUniquePtr pDataset = openDataset(*entry_.pSource, missing);
    const ErrorScope errors;
    OGRLayer* pLayer = pDataset->GetLayerByName(entry_.sName.c_str());
    // Where there are fields the error was of something else, as the reference.
    if (pLayer != nullptr && pLayer->GetLayerDefn()->GetFieldCount() == 0 && errors.failed() &&
        OGRFeatureUniquePtr(pLayer->GetNextFeature()) == nullptr)
        errors.raise("Reading \"" + entry_.sName + "\" failed");
    bReadable_ = true;
}

void TableData::testEnd(std::int64_t lRows, bool bAll) {
    if (lRows == 0)
        testReadable();
    if (!tellsStoredRows(*entry_.pSource))
        return;
    if (const std::string& sDamage = damage(bAll ? std::optional(lRows) : std::nullopt); !sDamage.empty()) {
        throw Failure(FailureNumber::HostFailure,
                      "Reading \"" + entry_.sName + "\" failed: " + sDamage + "; the file is damaged");
    }
}

const std::string& TableData::damage(std::optional<std::int64_t> lRows) {
    if (sDamage_)
        return *sDamage_;
    const StoredRows stored = storedRowsOf(openLayer()).value_or(StoredRows{});
    std::string sDamage = stored.sFault;
    if (sDamage.empty() && stored.lCount > 0) {
        const std::int64_t lFound = lRows ? *lRows : countRows(openLayer(), {});
        if (lFound < stored.lCount) {
            sDamage = "its file should hold " + std::to_string(stored.lCount) + " rows and holds " +
                      std::to_string(lFound);
        }
    }
    return sDamage_.emplace(std::move(sDamage));
}

bool TableData::isWhole() {
    try {
        return !tellsStoredRows(*entry_.pSource) || damage({}).empty();
    } catch (const Failure&) {
        return false;
    }
}

std::int64_t TableData::count(const std::string& sFilter) {
    if (const auto pKnown = counts_.find(sFilter); pKnown != counts_.end())
        return pKnown->second;
    const LayerHandle handle = openLayer();
    if (const auto lKnown = knownRowCount(handle, sFilter)) {
        if (*lKnown == 0)
            testReadable();
        return *lKnown;
    }
    const std::int64_t lCount = countRows(handle, sFilter);
    testEnd(lCount, sFilter.empty());
    return counts_.emplace(sFilter, lCount).first->second;
}

const RowOrder& TableData::order(const LayerHandle& handle) {
    if (!order_)
        order_ = RowOrder::of(handle);
    return *order_;
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

const std::optional<SubtypesFacts>& TableData::subtypes() {
    if (!bSubtypesRead_) {
        subtypes_ = subtypesOf(openLayer());
        bSubtypesRead_ = true;
    }
    return subtypes_;
}

const TableOverridesPtr& noOverrides() {
    static const auto pNone = std::make_shared<const TableOverrides>();
    return pNone;
}

TableReader::TableReader(TableDataPtr pData, GdalWorkspacePtr pWorkspace, TableOverridesPtr pOverrides)
    : pData_(std::move(pData)), pWorkspace_(std::move(pWorkspace)), pOverrides_(std::move(pOverrides)) {}

GdalFieldsPtr TableReader::fields() const {
    if (pOverrides_->fields.empty())
        return pData_->fields();
    if (pFields_ == nullptr)
        pFields_ = pData_->fields()->with(pOverrides_->fields);
    return pFields_;
}

GisSpatialReferencePtr
TableReader::spatialReference(const std::optional<ReferenceOverride>& overrides) const {
    const LayerHandle handle = pData_->openLayer();
    return makeSpatialReference(handle.layer().GetSpatialRef(), overrides,
                                TableData::extentsOf(pData_, pOverrides_->sFilter));
}

GisSubtypesPtr TableReader::subtypes() const {
    return std::make_shared<GdalSubtypes>(pOverrides_->subtypes ? pOverrides_->subtypes : pData_->subtypes(),
                                          fields(), pWorkspace_);
}

// Related rows are asked for once for each of their parents, by the value of one field.
GisCursorPtr TableReader::search(const std::string& sWhere) const {
    const auto equality = pOverrides_->sFilter.empty() ? parseEquality(sWhere) : std::nullopt;
    if (!equality || !pData_->isWhole())
        return searchAll(sWhere);
    if (auto pCursor = pData_->indexes().search(*equality, fields(), [this] { return pData_->openLayer(); }))
        return pCursor;
    auto pCursor = searchAll(sWhere);
    pData_->indexes().noteAnswered(*equality);
    return pCursor;
}

template<class Call>
auto TableReader::withFilter(Call call) const {
    try {
        return call();
    } catch (const Failure&) {
        testFilter();
        throw;
    }
}

std::int64_t TableReader::count() const {
    return withFilter([&] { return pData_->count(pOverrides_->sFilter); });
}

GisCursorPtr TableReader::searchAll(const std::string& sWhere) const {
    return withFilter([&] {
        const bool bAll = trimBlanks(sWhere).empty();
        auto handle = pData_->openLayer();
        const std::string sClause =
            bothClauses(pOverrides_->sFilter, bAll ? "" : sWhere, handle.layer().GetName());
        const RowOrder& order = pData_->order(handle);
        return std::make_shared<GdalCursor>(
            std::move(handle), fields(), order, sClause,
            [pData = pData_, bAll = sClause.empty()](std::int64_t lRows) { pData->testEnd(lRows, bAll); });
    });
}

GisCursorPtr TableReader::searchWithoutShapes() const {
    if (!pOverrides_->sFilter.empty())
        return search({}); // the filter may look at the shapes
    auto handle = pData_->openLayer();
    const RowOrder& order = pData_->order(handle);
    leaveShapesUnread(handle.layer(), order);
    return std::make_shared<GdalCursor>(
        std::move(handle), fields(), order, "",
        [pData = pData_](std::int64_t lRows) { pData->testEnd(lRows, true); });
}

void TableReader::testOverrides() const {
    const GdalFieldsPtr pFields = fields();
    const auto requireDomain = [&](const std::string& sPlace, const std::optional<std::string>& sDomain) {
        if (sDomain && !sDomain->empty() && pWorkspace_->findDomain(*sDomain) == nullptr)
            throw Failure(FailureNumber::HostFailure, sPlace + ": there is no domain \"" + *sDomain +
                                                          "\" in \"" + pWorkspace_->pathName() + "\"");
    };
    for (const FieldOverride& field : pOverrides_->fields)
        requireDomain(field.sPlace, field.sDomain);
    const auto requireField = [&](const std::string& sName) {
        if (pFields->findField(sName) < 0)
            throw Failure(FailureNumber::HostFailure,
                          pOverrides_->subtypes->sPlace + ": there is no field \"" + sName + "\"");
    };
    if (pOverrides_->subtypes) {
        requireField(pOverrides_->subtypes->sField);
        for (const SubtypeFacts& subtype : pOverrides_->subtypes->subtypes) {
            for (const SubtypeFieldFacts& field : subtype.fields) {
                requireField(field.sName);
                requireDomain(pOverrides_->subtypes->sPlace, field.sDomain);
            }
        }
    }
    testFilter();
}

void TableReader::testFilter() const {
    if (pOverrides_->sFilter.empty())
        return;
    at(pOverrides_->sFilterPlace, [&] {
        try {
            testClause(pData_->openLayer(), pOverrides_->sFilter);
        } catch (const Failure& failure) {
            throw withHint(failure, pOverrides_->sFilter);
        }
    });
}

// Shapes are not read: they are the bulk of most features.
std::vector<std::int64_t> TableReader::readIds(const LayerHandle& handle, const std::string& sWhere) const {
    OGRLayer& layer = handle.layer();
    const RowOrder& order = pData_->order(handle);
    if (!sWhere.empty() && order.numbersRows())
        return readPlaces(handle, sWhere);
    setFilter(layer, sWhere, order);
    leaveShapesUnread(layer, order);
    std::vector<std::int64_t> ids;
    const std::string sFilter = sWhere.empty() ? "" : " with the filter \"" + sWhere + "\"";
    try {
        forEachFeature(handle, "Reading \"" + datasetName() + "\"" + sFilter + " failed",
                       [&](OGRFeature& feature, const ErrorScope&) { ids.push_back(feature.GetFID()); });
    } catch (const Failure& failure) {
        raiseRejected(handle, sWhere, failure);
    }
    pData_->testEnd(static_cast<std::int64_t>(ids.size()), sWhere.empty());
    if (handle.source().sDriver == "PostgreSQL")
        std::sort(ids.begin(), ids.end()); // a server has no order but its key's
    return ids;
}

// Under a filter the format would number the rows anew.
std::vector<std::int64_t> TableReader::readPlaces(const LayerHandle& handle,
                                                  const std::string& sWhere) const {
    const ErrorScope errors;
    const std::string sAll = pData_->order(handle).filter({});
    const ResultSet result(handle.dataset(), "SELECT *, (" + sWhere + "\n) IS TRUE FROM " +
                                                 quotedName(handle.layer().GetName()) +
                                                 (sAll.empty() ? "" : " WHERE " + sAll));
    std::vector<std::int64_t> ids;
    for (std::int64_t lPlace = 0; result.layer() != nullptr; ++lPlace) {
        const OGRFeatureUniquePtr pFeature(result.layer()->GetNextFeature());
        if (pFeature == nullptr)
            break;
        if (pFeature->GetFieldAsInteger(pFeature->GetFieldCount() - 1) != 0)
            ids.push_back(lPlace);
    }
    if (errors.failed()) {
        raiseRejected(
            handle, sWhere,
            errors.failure("Reading \"" + datasetName() + "\" with the filter \"" + sWhere + "\" failed"));
    }
    return ids;
}

std::vector<std::int64_t> TableReader::idsWhere(const std::string& sWhere) const {
    return withFilter([&] {
        const auto handle = pData_->openLayer();
        const std::string sBoth = bothClauses(pOverrides_->sFilter, sWhere, handle.layer().GetName());
        try {
            return readIds(handle, sBoth);
        } catch (const Failure& failure) {
            throw withHint(failure, sBoth);
        }
    });
}

std::vector<std::int64_t> TableReader::missingIds(const std::vector<std::int64_t>& ids) const {
    const LayerHandle handle = pData_->openLayer();
    std::vector<std::int64_t> missing;
    if (pOverrides_->sFilter.empty() && handle.layer().TestCapability(OLCRandomRead) != 0) {
        const ErrorScope errors; // a feature that is not there is reported as an error
        std::copy_if(ids.begin(), ids.end(), std::back_inserter(missing), [&](std::int64_t lId) {
            return OGRFeatureUniquePtr(handle.layer().GetFeature(lId)) == nullptr;
        });
        return missing;
    }
    const std::vector<std::int64_t> all = withFilter([&] { return readIds(handle, pOverrides_->sFilter); });
    const std::unordered_set<std::int64_t> existing(all.begin(), all.end());
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(missing),
                 [&](std::int64_t lId) { return !existing.contains(lId); });
    return missing;
}

GisCursorPtr TableReader::searchIds(std::vector<std::int64_t> ids) const {
    return std::make_shared<GdalSelectionCursor>(pData_->openLayer(), fields(), std::move(ids));
}

GisWorkspacePtr GdalTable::workspace() const {
    return reader_.workspace();
}

GisWorkspacePtr GdalFeatureClass::workspace() const {
    return reader_.workspace();
}

std::int32_t GdalFeatureClass::shapeType() const {
    const LayerHandle handle = reader_.data().openLayer();
    return shapeTypeOf(handle.layer());
}

std::int32_t shapeTypeOf(OGRLayer& layer) {
    const ErrorScope errors;
    const OGRwkbGeometryType declared = wkbFlatten(layer.GetGeomType());
    if (declared != wkbUnknown)
        return static_cast<std::int32_t>(shapeTypeOf(declared));
    int lCount = 0;
    const std::unique_ptr<OGRGeometryTypeCounter, decltype(&VSIFree)> pCounts(
        layer.GetGeometryTypes(0, 0, lCount, nullptr, nullptr), &VSIFree);
    auto common = ShapeType::Null;
    bool bFirst = true;
    for (int lIndex = 0; lIndex < lCount; ++lIndex) {
        const OGRwkbGeometryType found = pCounts.get()[lIndex].eGeomType;
        if (found == wkbNone)
            continue; // features without a shape
        const ShapeType type = shapeTypeOf(found);
        common = bFirst || type == common ? type : ShapeType::Null;
        if (!bFirst && common == ShapeType::Null)
            break;
        bFirst = false;
    }
    return static_cast<std::int32_t>(common);
}

} // namespace halvane::host::gdal
