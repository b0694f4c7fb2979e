#include "host/gdal/rows/ColumnRows.h"

#include "host/gdal/rows/ServerColumns.h"
#include "host/gdal/rows/StoredColumns.h"

#include <limits>
#include <utility>

namespace halvane::host::gdal {

std::unique_ptr<ColumnRows> ColumnRows::tryOpen(const LayerHandle& layer, const GdalFieldsPtr& pFields,
                                                std::int64_t lLastId, const std::string& sCondition) {
    std::unique_ptr<ColumnReader> pReader;
    if (isServer(layer.source()))
        pReader = ServerColumns::tryOpen(layer, *pFields, lLastId, sCondition);
    else
        pReader = StoredColumns::tryOpen(layer, *pFields, lLastId, sCondition);
    return pReader == nullptr ? nullptr : std::make_unique<ColumnRows>(std::move(pReader), pFields, lLastId);
}

GisRowPtr ColumnRows::next() {
    if (pBatch_ == nullptr || ++nBatchRow_ == pBatch_->rowCount())
        turnToNextBatch();
    if (pBatch_ == nullptr) {
        if (pReader_->reachedEnd())
            lLastId_ = std::numeric_limits<std::int64_t>::max();
        rows_.clear();
        pEarlierBatch_.reset();
        return nullptr;
    }
    lLastId_ = pBatch_->ids[nBatchRow_];
    if (auto pRow = rows_.spare()) {
        pRow->reset(pBatch_, nBatchRow_);
        return pRow;
    }
    auto pRow = std::make_shared<ColumnRow>(pFields_, pBatch_, nBatchRow_);
    rows_.add(pRow);
    return pRow;
}

// A row of the last batch may still be held: the one before it is the one to use again.
void ColumnRows::turnToNextBatch() {
    rows_.release();
    const bool bUsed = pEarlierBatch_ != nullptr && pEarlierBatch_.use_count() == 1;
    ColumnBatchPtr pUsed = bUsed ? std::move(pEarlierBatch_) : nullptr;
    pEarlierBatch_ = std::move(pBatch_);
    pBatch_ = pReader_->next(std::move(pUsed));
    nBatchRow_ = 0;
}

} // namespace halvane::host::gdal
