#include "host/gdal/rows/ScanCursor.h"

#include "host/gdal/rows/Filtering.h"
#include "host/gdal/source/Errors.h"

#include <utility>

namespace halvane::host::gdal {

ScanCursor::ScanCursor(LayerHandle layer, GdalFieldsPtr pFields, RowOrder order, const Clause& clause,
                       std::function<void(std::int64_t)> fnTestEnd, std::string sNarrowing)
    : pFeatures_(std::make_unique<ScannedFeatures>(std::move(layer), std::move(order), clause)),
      pFields_(std::move(pFields)), rows_(pFields_), fnTestEnd_(std::move(fnTestEnd)),
      sCondition_(std::move(sNarrowing)), bMayUseColumns_(clause.isEmpty() && !pFields_->shapeChange()) {
    if (isServer(pFeatures_->layer().source())) {
        bMayUseColumns_ = !pFields_->shapeChange();
        sCondition_ = clause.isEmpty() ? "" : clause.inBrackets();
    }
    if (clause.isEmpty())
        return;
    // Databases find a bad clause only when they read.
    pFeatures_->read(rows_.nextBlock());
    if (rows_.failure())
        raiseRejected(pFeatures_->layer(), clause, *rows_.failure());
}

void ScanCursor::finish() {
    const ErrorScope errors;
    pColumns_.reset();
    pFeatures_.reset();
}

void ScanCursor::advance() {
    if (pFeatures_->isLong() && std::exchange(bMayUseColumns_, false) && bAscending_)
        pColumns_ = ColumnRows::tryOpen(pFeatures_->layer(), pFields_, lLastId_, sCondition_);
    if (pColumns_ != nullptr)
        rows_.clear();
    else
        pFeatures_->read(rows_.nextBlock());
}

// What columns did not yield comes row by row: nothing at the end of the data, else the rows or the failure
// that columns cannot tell. The reading begins before the columns let go of the state that they saw.
GisRowPtr ScanCursor::nextColumnRow() {
    GisRowPtr pRow = pColumns_->next();
    if (pRow == nullptr) {
        lLastId_ = pColumns_->lastId();
        pFeatures_->readBehind(lLastId_, rows_.nextBlock());
        pColumns_.reset();
    }
    return pRow;
}

GisRowPtr ScanCursor::nextRow() {
    if (pColumns_ == nullptr && rows_.areOut() && !rows_.isLast() && pFeatures_ != nullptr)
        advance();
    if (pColumns_ != nullptr) {
        if (GisRowPtr pRow = nextColumnRow())
            return pRow;
    }
    if (rows_.areOut()) {
        finish();
        rows_.end();
        if (const auto fnTest = std::exchange(fnTestEnd_, nullptr))
            fnTest(static_cast<std::int64_t>(nHandedOut_));
        return nullptr;
    }
    GisRowPtr pRow = rows_.next();
    ++nHandedOut_;
    const std::int64_t lId = pRow->objectId();
    bAscending_ = bAscending_ && (nHandedOut_ == 1 || lId > lLastId_);
    lLastId_ = lId;
    return pRow;
}

} // namespace halvane::host::gdal
