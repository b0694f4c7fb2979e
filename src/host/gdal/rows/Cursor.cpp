#include "host/gdal/rows/Cursor.h"

#include "base/Failure.h"
#include "host/gdal/rows/Clause.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace halvane::host::gdal {

namespace {

// The table's columns in the order of its definition, by key; "" where the table has no key.
std::string orderedQuery(const LayerHandle& layer, const std::string& sWhere) {
    const std::string sKey = layer.layer().GetFIDColumn();
    if (layer.source().sDriver != "PostgreSQL" || sKey.empty())
        return {};
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    // By this name the driver takes the column as the identifier.
    std::string sColumns = quotedName(sKey) + " AS ogc_fid";
    for (int lColumn = 0; lColumn < definition.GetGeomFieldCount(); ++lColumn)
        sColumns += ", " + quotedName(definition.GetGeomFieldDefn(lColumn)->GetNameRef());
    for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn)
        sColumns += ", " + quotedName(definition.GetFieldDefn(lColumn)->GetNameRef());
    return "SELECT " + sColumns + " FROM " + serverTable(layer.layer().GetName()) +
           (sWhere.empty() ? "" : " WHERE (" + sWhere + "\n)") + " ORDER BY " + quotedName(sKey);
}

bool haveSameFields(const OGRFeatureDefn& left, const OGRFeatureDefn& right) {
    if (left.GetFieldCount() != right.GetFieldCount())
        return false;
    for (int lColumn = 0; lColumn < left.GetFieldCount(); ++lColumn)
        if (left.GetFieldDefn(lColumn)->GetType() != right.GetFieldDefn(lColumn)->GetType())
            return false;
    return true;
}

} // namespace

GdalCursor::GdalCursor(LayerHandle layer, GdalFieldsPtr pFields, RowOrder order, const std::string& sWhere,
                       std::function<void(std::int64_t)> fnTestEnd)
    : layer_(std::move(layer)), check_(*layer_), pFields_(std::move(pFields)), order_(std::move(order)),
      fnTestEnd_(std::move(fnTestEnd)), bMayUseColumns_(sWhere.empty()) {
    sContext_ = "Reading \"" + std::string(layer_->layer().GetName()) + "\" failed";
    if (!sWhere.empty())
        sContext_ += " with the filter \"" + sWhere + "\"";
    open(sWhere);
    if (sWhere.empty())
        return;
    // Databases find a bad clause only when they read.
    readAhead();
    if (block_.failure)
        raiseRejected(*layer_, sWhere, *block_.failure);
}

void GdalCursor::open(const std::string& sWhere) {
    const std::string sQuery = orderedQuery(*layer_, sWhere);
    if (sQuery.empty()) {
        setFilter(layer_->layer(), sWhere, order_);
        return;
    }
    const ErrorScope errors;
    pResult_ = std::make_unique<ResultSet>(layer_->dataset(), sQuery);
    if (pResult_->layer() == nullptr || errors.failed())
        errors.raise(sContext_);
    if (!haveSameFields(*pResult_->layer()->GetLayerDefn(), *layer_->layer().GetLayerDefn()))
        throw Failure(FailureNumber::HostFailure, sContext_ + ": its columns cannot be read by its key");
}

void GdalCursor::finish() {
    const ErrorScope errors;
    pThread_.reset();
    pColumns_.reset();
    pResult_.reset();
    check_.reset();
    layer_.reset();
}

OGRLayer& GdalCursor::rowLayer() {
    return pResult_ != nullptr ? *pResult_->layer() : layer_->layer();
}

// Blocks grow, since many cursors are asked for one row only.
void GdalCursor::readAhead() {
    constexpr std::size_t lGreatestBlock = 64;
    readFeatures(rowLayer(), lBlock_, sContext_, block_, layer_->missingRows(), &*check_,
                 [] { return true; });
    lBlock_ = std::min(2 * lBlock_, lGreatestBlock);
    lNext_ = 0;
}

void GdalCursor::startThread() {
    constexpr std::size_t lThreadBlock = 256;
    const auto read = [&layer = rowLayer(), &sContext = sContext_, &missing = layer_->missingRows(),
                       pCheck = &*check_](ReadAhead<FeatureBlock>& ahead) {
        for (bool bMore = true; bMore;) {
            FeatureBlock block = ahead.blank();
            readFeatures(layer, lThreadBlock, sContext, block, missing, pCheck,
                         [&ahead] { return !ahead.isStopped(); });
            bMore = !block.bLast;
            bMore = ahead.put(std::move(block)) && bMore;
        }
    };
    try {
        pThread_ = std::make_unique<ReadAhead<FeatureBlock>>(read);
    } catch (const std::system_error&) {
        // No thread can be had.
    }
}

// The first rows are read at once: a reader of a few does not pay for a thread.
void GdalCursor::advance() {
    constexpr std::size_t lRowsAtOnce = 1024;
    if (lHandedOut_ >= lRowsAtOnce && bMayUseColumns_ && bAscending_)
        pColumns_ = ColumnReader::tryOpen(*layer_, *pFields_, lLastId_);
    if (lHandedOut_ >= lRowsAtOnce)
        bMayUseColumns_ = false;
    if (pColumns_ != nullptr) {
        rows_.clear();
        block_ = {};
        lNext_ = 0;
        return;
    }
    if (lHandedOut_ >= lRowsAtOnce && pThread_ == nullptr)
        startThread();
    if (pThread_ == nullptr) {
        readAhead();
        return;
    }
    lNext_ = 0;
    block_ = pThread_->next(std::move(block_)).value_or(FeatureBlock{{}, {}, {}, true});
}

// What columns did not yield comes row by row: nothing at the end of the data, else the rows or the failure
// that columns cannot tell. The reading begins before the columns let go of the state that they saw.
void GdalCursor::leaveColumns() {
    columnRows_.clear();
    pBatch_.reset();
    pEarlierBatch_.reset();
    setFilter(layer_->layer(), quotedName(layer_->layer().GetFIDColumn()) + " > " + std::to_string(lLastId_),
              order_);
    readAhead();
    pColumns_.reset();
}

GisRowPtr GdalCursor::nextColumnRow() {
    if (pBatch_ == nullptr || ++lBatchRow_ == pBatch_->rowCount())
        turnToNextBatch();
    if (pBatch_ == nullptr) {
        leaveColumns();
        return nullptr;
    }
    lLastId_ = pBatch_->ids[lBatchRow_];
    if (auto pRow = columnRows_.spare()) {
        pRow->reset(pBatch_, lBatchRow_);
        return pRow;
    }
    auto pRow = std::make_shared<ColumnRow>(pFields_, pBatch_, lBatchRow_);
    columnRows_.add(pRow);
    return pRow;
}

// A row of the last batch may still be held: the one before it is the one to use again.
void GdalCursor::turnToNextBatch() {
    columnRows_.release();
    const bool bUsed = pEarlierBatch_ != nullptr && pEarlierBatch_.use_count() == 1;
    ColumnBatchPtr pUsed = bUsed ? std::move(pEarlierBatch_) : nullptr;
    pEarlierBatch_ = std::move(pBatch_);
    pBatch_ = pColumns_->next(std::move(pUsed));
    lBatchRow_ = 0;
}

GisRowPtr GdalCursor::nextRow() {
    if (pColumns_ == nullptr && lNext_ == block_.features.size() && !block_.bLast && layer_) {
        rows_.release(); // the shape of a row can be as large as those that are read now
        advance();
    }
    if (pColumns_ != nullptr) {
        if (GisRowPtr pRow = nextColumnRow())
            return pRow;
    }
    if (lNext_ == block_.features.size()) {
        finish();
        rows_.clear();
        if (block_.failure)
            throw *std::exchange(block_.failure, std::nullopt);
        if (const auto fnTest = std::exchange(fnTestEnd_, nullptr))
            fnTest(static_cast<std::int64_t>(lHandedOut_));
        return nullptr;
    }
    RowFaultsPtr pFaults = block_.faults.empty() ? nullptr : block_.faultsOf(lNext_);
    OGRFeatureUniquePtr& pFeature = block_.features[lNext_++];
    ++lHandedOut_;
    bAscending_ = bAscending_ && (lHandedOut_ == 1 || pFeature->GetFID() > lLastId_);
    lLastId_ = pFeature->GetFID();
    if (auto pRow = rows_.spare()) {
        pRow->exchange(pFeature, std::move(pFaults));
        return pRow;
    }
    auto pRow = std::make_shared<GdalRow>(pFields_, std::move(pFeature), std::move(pFaults));
    rows_.add(pRow);
    return pRow;
}

} // namespace halvane::host::gdal
