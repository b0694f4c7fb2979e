#include "host/gdal/rows/KeptRows.h"

#include "base/Failure.h"
#include "host/gdal/rows/ColumnReader.h"
#include "host/gdal/rows/Geometry.h"

#include <algorithm>
#include <limits>
#include <string>

namespace halvane::host::gdal {

namespace {

std::size_t bytesOf(const ColumnBatch& batch) {
    constexpr std::size_t lBytesOfShape = 200;
    std::size_t lBytes =
        batch.cells.size() * sizeof(Cell) + batch.ids.size() * sizeof(std::int64_t) + batch.heap.bytes();
    for (const GisGeometryPtr& pShape : batch.shapes)
        lBytes += lBytesOfShape + 2 * static_cast<const GdalGeometry&>(*pShape).geometry().WkbSize();
    return lBytes;
}

} // namespace

KeptRowsPtr KeptRows::tryRead(const LayerHandle& layer, const GdalFields& fields, std::size_t lMostBytes) {
    const auto pReader = ColumnReader::tryOpen(layer, fields, std::numeric_limits<std::int64_t>::min());
    if (pReader == nullptr)
        return nullptr;
    auto pRows = std::make_shared<KeptRows>();
    std::size_t lBytes = 0;
    while (ColumnBatchPtr pBatch = pReader->next(nullptr)) {
        pBatch->cells.shrink_to_fit();
        lBytes += bytesOf(*pBatch);
        if (lBytes > lMostBytes)
            return nullptr;
        pRows->lastIds_.push_back(pBatch->ids.back());
        pRows->batches_.push_back(std::move(pBatch));
    }
    return pReader->reachedEnd() ? pRows : nullptr;
}

bool KeptRows::forEachCell(std::size_t lColumn,
                           const std::function<bool(std::int64_t, const Cell&)>& fnTake) const {
    for (const ColumnBatchPtr& pBatch : batches_) {
        const std::size_t nColumns = pBatch->cells.size() / pBatch->rowCount();
        for (std::size_t lRow = 0; lRow < pBatch->rowCount(); ++lRow)
            if (!fnTake(pBatch->ids[lRow], pBatch->cells[lRow * nColumns + lColumn]))
                return false;
    }
    return true;
}

std::pair<const ColumnBatchPtr&, std::size_t> KeptRows::find(std::int64_t lId) const {
    const auto batch = std::ranges::lower_bound(lastIds_, lId) - lastIds_.begin();
    if (static_cast<std::size_t>(batch) < batches_.size()) {
        const ColumnBatchPtr& pBatch = batches_[static_cast<std::size_t>(batch)];
        const std::vector<std::int64_t>& ids = pBatch->ids;
        // Where no row was ever deleted, identifiers follow one another.
        const auto lGuess = static_cast<std::size_t>(lId - ids.front());
        if (lGuess < ids.size() && ids[lGuess] == lId)
            return {pBatch, lGuess};
        if (const auto id = std::ranges::lower_bound(ids, lId); *id == lId)
            return {pBatch, static_cast<std::size_t>(id - ids.begin())};
    }
    throw Failure(FailureNumber::HostFailure, "Row " + std::to_string(lId) + " is gone");
}

GisRowPtr KeptRowsCursor::nextRow() {
    if (ids_.empty())
        return nullptr;
    const auto [pBatch, lRow] = pRows_->find(ids_.front());
    ids_ = ids_.subspan(1);
    if (auto pRow = spare_.spare()) {
        pRow->reset(pBatch, lRow);
        return pRow;
    }
    auto pRow = std::make_shared<ColumnRow>(pFields_, pBatch, lRow);
    spare_.add(pRow);
    return pRow;
}

} // namespace halvane::host::gdal
