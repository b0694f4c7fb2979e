#include "host/gdal/objects/TableData.h"

#include "base/Failure.h"
#include "host/gdal/objects/Subtypes.h"
#include "host/gdal/rows/RowCount.h"
#include "host/gdal/rows/StoredRows.h"
#include "host/gdal/rows/WatchedCursor.h"
#include "host/gdal/source/Errors.h"

namespace halvane::host::gdal {

TableData::TableData(std::shared_ptr<HandlePool> pPool, DatasetEntry entry)
    : pPool_(std::move(pPool)), entry_(std::move(entry)) {}

GdalFieldsPtr TableData::fields() {
    GdalFieldsPtr pFields = pFields_.lock();
    if (pFields == nullptr) {
        LayerHandle handle = openLayer();
        testReadable(handle);
        pFields = fieldsOf(handle);
        pFields_ = pFields;
        pPool_->keepAWhile(pFields);
    }
    return pFields;
}

LayerHandle TableData::openLayer() {
    LayerHandle handle = pPool_->acquireLayer(entry_.pSource, entry_.sName);
    if (const int lFields = handle.layer().GetLayerDefn()->GetFieldCount(); lFields > 0)
        lFieldsRead_ = lFields;
    else if (lFieldsRead_.value_or(0) > 0)
        failWithoutDefinition(handle);
    return handle;
}

void TableData::testReadable(LayerHandle& handle) {
    if (handle.layer().GetLayerDefn()->GetFieldCount() == 0 && fieldsRead() > 0)
        failWithoutDefinition(handle);
}

// It has no fields where another handle found some: this one read none of it.
void TableData::failWithoutDefinition(LayerHandle& handle) const {
    handle.discard();
    throw Failure(FailureNumber::HostFailure, "Reading the definition of \"" + entry_.sName + "\" failed");
}

// A driver tells once for each handle that it cannot read a definition, and yields no row from then on.
int TableData::fieldsRead() {
    if (lFieldsRead_)
        return *lFieldsRead_;
    MissingRows missing;
    const GDALDatasetUniquePtr pDataset = openDataset(*entry_.pSource, missing);
    const ErrorScope errors;
    OGRLayer* pLayer = pDataset->GetLayerByName(entry_.sName.c_str());
    const int lFields = pLayer == nullptr ? 0 : pLayer->GetLayerDefn()->GetFieldCount();
    // Where there are fields the error was of something else, as the reference.
    if (pLayer != nullptr && lFields == 0 && errors.failed() &&
        OGRFeatureUniquePtr(pLayer->GetNextFeature()) == nullptr)
        errors.raise("Reading \"" + entry_.sName + "\" failed");
    return lFieldsRead_.emplace(lFields);
}

void TableData::testEnd(std::int64_t lRows, bool bAll) {
    if (lRows == 0)
        static_cast<void>(fieldsRead());
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

GisCursorPtr TableData::watched(const std::shared_ptr<TableData>& pData, GisCursorPtr pRows) {
    return std::make_shared<WatchedCursor>(
        std::move(pRows), pData->pPool_->loops(), pData->entry_.sName, [pData] {
            return saysRowCount(*pData->entry_.pSource) ? aboutRowCount(pData->openLayer()) : std::nullopt;
        });
}

GisCursorPtr TableData::watched(GisCursorPtr pRows, std::size_t nRows) const {
    return std::make_shared<WatchedCursor>(std::move(pRows), pPool_->loops(), entry_.sName,
                                           [nRows] { return static_cast<std::int64_t>(nRows); });
}

std::int64_t TableData::count(const std::string& sFilter) {
    if (const auto pKnown = counts_.find(sFilter); pKnown != counts_.end())
        return pKnown->second;
    LayerHandle handle = openLayer();
    const Clause clause(sFilter, handle.layer().GetName());
    if (const auto lKnown = knownRowCount(handle, clause)) {
        if (*lKnown == 0)
            testReadable(handle);
        return *lKnown;
    }
    const std::int64_t lCount = countRows(handle, clause);
    testEnd(lCount, sFilter.empty());
    return counts_.emplace(sFilter, lCount).first->second;
}

const RowOrder& TableData::order(const LayerHandle& handle) {
    if (!order_)
        order_ = RowOrder::of(handle);
    return *order_;
}

const std::optional<SubtypesFacts>& TableData::subtypes() {
    if (!bSubtypesRead_) {
        subtypes_ = subtypesOf(openLayer());
        bSubtypesRead_ = true;
    }
    return subtypes_;
}

} // namespace halvane::host::gdal
