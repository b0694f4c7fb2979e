#include "host/gdal/objects/TableReader.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/objects/Places.h"
#include "host/gdal/objects/Subtypes.h"
#include "host/gdal/objects/Workspace.h"
#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/rows/Filtering.h"
#include "host/gdal/rows/Geometry.h"
#include "host/gdal/rows/Narrowing.h"
#include "host/gdal/rows/PickedFeatures.h"
#include "host/gdal/rows/ScanCursor.h"
#include "host/gdal/rows/TransformedShapes.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <algorithm>
#include <unordered_set>

namespace halvane::host::gdal {

const TableOverridesPtr& noOverrides() {
    static const auto pNone = std::make_shared<const TableOverrides>();
    return pNone;
}

TableReader::TableReader(TableDataPtr pData, GdalWorkspacePtr pWorkspace, TableOverridesPtr pOverrides)
    : pData_(std::move(pData)), pWorkspace_(std::move(pWorkspace)), pOverrides_(std::move(pOverrides)) {}

GdalFieldsPtr TableReader::fields() const {
    if (pOverrides_->fields.empty() && pOverrides_->sCrs.empty())
        return pData_->fields();
    if (pFields_ == nullptr) {
        pFields_ = pData_->fields()->with(pOverrides_->fields);
        if (ShapeChange change = shapeChange())
            pFields_ = pFields_->withShapes(std::move(change));
    }
    return pFields_;
}

GisSpatialReferencePtr
TableReader::spatialReference(const std::optional<ReferenceOverride>& overrides) const {
    const LayerHandle handle = pData_->openLayer();
    LayerExtents extents = TableData::extentsOf(pData_, pOverrides_->sFilter);
    if (pOverrides_->sCrs.empty())
        return makeSpatialReference(handle.layer().GetSpatialRef(), overrides, std::move(extents));
    ReferenceOverride target = overrides.value_or(ReferenceOverride());
    target.sDefinition = pOverrides_->sCrs;
    extents.xy = [reader = *this] { return reader.transformedExtent(); };
    return makeSpatialReference(nullptr, target, std::move(extents));
}

ShapeChange TableReader::shapeChange() const {
    if (pOverrides_->sCrs.empty())
        return {};
    return at(pOverrides_->sFilterPlace, [&] {
        const LayerHandle handle = pData_->openLayer();
        const auto pFrom = makeSpatialReference(handle.layer().GetSpatialRef(), pOverrides_->reference, {});
        if (pFrom == nullptr)
            throw Failure(FailureNumber::HostFailure,
                          "crs=\"" + pOverrides_->sCrs + "\": nothing says which reference the data of \"" +
                              datasetName() + "\" has; add <SpatialReference definition=\"...\"/>");
        return transformationOfShapes(pFrom->transformationTo(*registeredReference(pOverrides_->sCrs)));
    });
}

std::optional<XyDomain> TableReader::transformedExtent() const {
    std::optional<XyDomain> bounds;
    const GisCursorPtr pRows = searchUnordered({});
    while (const GisRowPtr pRow = pRows->nextRow()) {
        const auto pShape = std::dynamic_pointer_cast<const GdalGeometry>(pRow->shape());
        if (pShape == nullptr || pShape->geometry().IsEmpty() != 0)
            continue;
        OGREnvelope box;
        pShape->geometry().getEnvelope(&box);
        if (!bounds)
            bounds = XyDomain{box.MinX, box.MinY, box.MaxX, box.MaxY, 0, 0, 0};
        bounds->dXMin = std::min(bounds->dXMin, box.MinX);
        bounds->dYMin = std::min(bounds->dYMin, box.MinY);
        bounds->dXMax = std::max(bounds->dXMax, box.MaxX);
        bounds->dYMax = std::max(bounds->dYMax, box.MaxY);
    }
    return bounds;
}

void TableReader::testOrderAndReference() const {
    if (!pOverrides_->orderBy.empty())
        at(pOverrides_->sFilterPlace, [&] { requireKeys(*pData_->fields(), pOverrides_->orderBy); });
    static_cast<void>(shapeChange());
}

const RowRanks& TableReader::ranks() const {
    if (pRanks_ == nullptr)
        pRanks_ = at(pOverrides_->sFilterPlace, [&] {
            const GisCursorPtr pRows = searchUnordered({});
            return std::make_shared<const RowRanks>(*pRows, *fields(), pOverrides_->orderBy);
        });
    return *pRanks_;
}

GisSubtypesPtr TableReader::subtypes() const {
    return std::make_shared<GdalSubtypes>(pOverrides_->subtypes ? pOverrides_->subtypes : pData_->subtypes(),
                                          fields(), pWorkspace_);
}

// Related rows are asked for once for each of their parents, by the value of one field.
GisCursorPtr TableReader::search(const std::string& sWhere) const {
    if (pOverrides_->orderBy.empty())
        return searchUnordered(sWhere);
    if (trimBlanks(sWhere).empty())
        return searchIds(ranks().all());
    std::vector<std::int64_t> ids;
    const GisCursorPtr pRows = searchUnordered(sWhere);
    while (const GisRowPtr pRow = pRows->nextRow())
        ids.push_back(pRow->objectId());
    return searchIds(ranks().sorted(std::move(ids)));
}

GisCursorPtr TableReader::searchUnordered(const std::string& sWhere) const {
    const auto equality =
        pOverrides_->sFilter.empty() && pOverrides_->sCrs.empty() ? parseEquality(sWhere) : std::nullopt;
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
        auto pFields = fields();
        auto handle = pData_->openLayer(); // by now it tells whether a handle lacks what others have
        const Clause clause = within(handle, bAll ? "" : sWhere);
        const RowOrder& order = pData_->order(handle);
        GisCursorPtr pRows = std::make_shared<ScanCursor>(
            std::move(handle), std::move(pFields), order, clause,
            [pData = pData_, bAll = clause.isEmpty()](std::int64_t lRows) { pData->testEnd(lRows, bAll); });
        return clause.isEmpty() ? TableData::watched(pData_, std::move(pRows)) : pRows;
    });
}

GisCursorPtr TableReader::searchWithoutShapes() const {
    if (!pOverrides_->sFilter.empty() || !pOverrides_->orderBy.empty())
        return search({}); // the filter may look at the shapes
    return searchPlain(false, {});
}

GisCursorPtr TableReader::searchNarrowed(const RowCondition& condition, bool bShapes) const {
    if (!pOverrides_->sFilter.empty() || !pOverrides_->orderBy.empty())
        return search({}); // the filter may look at the shapes
    return searchPlain(bShapes,
                       narrowingOf(*pData_->openLayer().layer().GetLayerDefn(), *fields(), condition));
}

GisCursorPtr TableReader::searchPlain(bool bShapes, const std::string& sNarrowing) const {
    auto pFields = fields();
    auto handle = pData_->openLayer();
    const RowOrder& order = pData_->order(handle);
    if (!bShapes)
        leaveShapesUnread(handle.layer(), order);
    GisCursorPtr pRows = std::make_shared<ScanCursor>(
        std::move(handle), std::move(pFields), order, Clause(),
        [pData = pData_, bAll = sNarrowing.empty()](std::int64_t lRows) { pData->testEnd(lRows, bAll); },
        sNarrowing);
    return sNarrowing.empty() ? TableData::watched(pData_, std::move(pRows)) : pRows;
}

Clause TableReader::within(const LayerHandle& handle, const std::string& sWhere) const {
    const std::string sLayer = handle.layer().GetName();
    return Clause(pOverrides_->sFilter, sLayer).with(Clause(sWhere, sLayer));
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
            const LayerHandle handle = pData_->openLayer();
            testClause(handle, within(handle, {}));
        } catch (const Failure& failure) {
            throw withHint(failure, pOverrides_->sFilter);
        }
    });
}

// Shapes are not read: they are the bulk of most features.
std::vector<std::int64_t> TableReader::readIds(const LayerHandle& handle, const Clause& clause) const {
    OGRLayer& layer = handle.layer();
    const RowOrder& order = pData_->order(handle);
    if (!clause.isEmpty() && order.numbersRows())
        return readPlaces(handle, clause);
    setFilter(layer, clause, order);
    leaveShapesUnread(layer, order);
    std::vector<std::int64_t> ids;
    const std::string sFilter = clause.isEmpty() ? "" : " with the filter \"" + clause.text() + "\"";
    try {
        forEachFeature(handle, "Reading \"" + datasetName() + "\"" + sFilter + " failed",
                       [&](OGRFeature& feature, const ErrorScope&) { ids.push_back(feature.GetFID()); });
    } catch (const Failure& failure) {
        raiseRejected(handle, clause, failure);
    }
    pData_->testEnd(static_cast<std::int64_t>(ids.size()), clause.isEmpty());
    if (isServer(handle.source()))
        std::sort(ids.begin(), ids.end()); // a server has no order but its key's
    return ids;
}

// Under a filter the format would number the rows anew.
std::vector<std::int64_t> TableReader::readPlaces(const LayerHandle& handle, const Clause& clause) const {
    const ErrorScope errors;
    const std::string sAll = pData_->order(handle).filter({});
    const ResultSet result(handle.dataset(), "SELECT *, " + clause.inBrackets() + " IS TRUE FROM " +
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
        raiseRejected(handle, clause,
                      errors.failure("Reading \"" + datasetName() + "\" with the filter \"" + clause.text() +
                                     "\" failed"));
    }
    return ids;
}

std::vector<std::int64_t> TableReader::idsWhere(const std::string& sWhere) const {
    auto ids = idsWhereUnordered(sWhere);
    return pOverrides_->orderBy.empty() ? ids : ranks().sorted(std::move(ids));
}

std::vector<std::int64_t> TableReader::idsWhereUnordered(const std::string& sWhere) const {
    return withFilter([&] {
        const auto handle = pData_->openLayer();
        const Clause both = within(handle, sWhere);
        try {
            return readIds(handle, both);
        } catch (const Failure& failure) {
            throw withHint(failure, both.text());
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
    const std::vector<std::int64_t> all = withFilter([&] { return readIds(handle, within(handle, {})); });
    const std::unordered_set<std::int64_t> existing(all.begin(), all.end());
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(missing),
                 [&](std::int64_t lId) { return !existing.contains(lId); });
    return missing;
}

GisCursorPtr TableReader::searchIds(std::vector<std::int64_t> ids) const {
    const std::size_t nRows = ids.size();
    return pData_->watched(
        std::make_shared<FeatureCursor>(fields(), pickedFeatures(pData_->openLayer(), std::move(ids))),
        nRows);
}

} // namespace halvane::host::gdal
