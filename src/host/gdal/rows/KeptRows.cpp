#include "host/gdal/rows/KeptRows.h"

#include "host/gdal/rows/Geometry.h"
#include "host/gdal/rows/StoredColumns.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace halvane::host::gdal {

namespace {

std::size_t bytesOf(const ColumnBatch& batch) {
    constexpr std::size_t nBytesOfShape = 200;
    std::size_t nBytes = batch.cells.size() * sizeof(Cell) + batch.ids.size() * sizeof(std::int64_t) +
                         batch.heap.bytes() + batch.points.bytes();
    for (const GisGeometryPtr& pShape : batch.shapes)
        nBytes += nBytesOfShape + 2 * static_cast<const GdalGeometry&>(*pShape).geometry().WkbSize();
    return nBytes;
}

std::int64_t placeIn(std::size_t nBatch, std::size_t nRow) {
    return static_cast<std::int64_t>(nBatch << 32U | nRow);
}

} // namespace

KeptRowsPtr KeptRows::tryRead(const LayerHandle& layer, const GdalFields& fields, std::size_t nMostBytes) {
    const auto pReader = StoredColumns::tryOpen(layer, fields, std::numeric_limits<std::int64_t>::min());
    if (pReader == nullptr)
        return nullptr;
    auto pRows = std::make_shared<KeptRows>();
    pRows->nColumns_ = fields.columns().size();
    std::size_t nBytes = 0;
    while (ColumnBatchPtr pBatch = pReader->next(nullptr)) {
        pBatch->cells.shrink_to_fit();
        nBytes += bytesOf(*pBatch);
        if (nBytes > nMostBytes)
            return nullptr;
        pRows->lastIds_.push_back(pBatch->ids.back());
        pRows->batches_.push_back(std::move(pBatch));
    }
    return pReader->reachedEnd() ? pRows : nullptr;
}

void KeptRows::forEachCell(std::size_t nColumn,
                           const std::function<void(std::int64_t, const Cell&)>& fnTake) const {
    for (std::size_t nBatch = 0; nBatch < batches_.size(); ++nBatch) {
        const ColumnBatch& batch = *batches_[nBatch];
        for (std::size_t nRow = 0; nRow < batch.rowCount(); ++nRow)
            fnTake(placeIn(nBatch, nRow), batch.cells[nRow * nColumns_ + nColumn]);
    }
}

std::optional<std::int64_t> KeptRows::placeOf(std::int64_t lId) const {
    const auto nBatch = static_cast<std::size_t>(std::ranges::lower_bound(lastIds_, lId) - lastIds_.begin());
    if (nBatch == batches_.size())
        return std::nullopt;
    const std::vector<std::int64_t>& ids = batches_[nBatch]->ids;
    const auto id = std::ranges::lower_bound(ids, lId);
    if (*id != lId)
        return std::nullopt;
    return placeIn(nBatch, static_cast<std::size_t>(id - ids.begin()));
}

std::span<const Cell> KeptRows::cellsAt(std::int64_t lPlace) const {
    const auto [pBatch, nRow] = at(lPlace);
    return std::span(pBatch->cells).subspan(nRow * nColumns_, nColumns_);
}

void KeptRows::prefetchCells(std::int64_t lPlace) const {
    constexpr std::size_t nLineBytes = 64;
    const auto bytes = std::as_bytes(cellsAt(lPlace));
    for (std::size_t nByte = 0; nByte < bytes.size(); nByte += nLineBytes)
        __builtin_prefetch(bytes.data() + nByte);
}

void KeptRows::prefetchTexts(std::int64_t lPlace) const {
    for (const Cell& cell : cellsAt(lPlace))
        if (const auto* sText = std::get_if<std::string_view>(&cell))
            __builtin_prefetch(sText->data());
}

namespace {

constexpr std::size_t nRowsAhead = 4;

} // namespace

KeptRowsCursor::KeptRowsCursor(GdalFieldsPtr pFields, KeptRowsPtr pRows, std::span<const std::int64_t> places,
                               std::shared_ptr<const void> pOwner)
    : pFields_(std::move(pFields)), pRows_(std::move(pRows)), places_(places), pOwner_(std::move(pOwner)) {
    for (const std::int64_t lPlace : places_.first(std::min(places_.size(), nRowsAhead)))
        pRows_->prefetchCells(lPlace);
}

GisRowPtr KeptRowsCursor::nextRow() {
    if (places_.empty())
        return nullptr;
    const auto [pBatch, nRow] = pRows_->at(places_.front());
    if (places_.size() > nRowsAhead)
        pRows_->prefetchCells(places_[nRowsAhead]);
    places_ = places_.subspan(1);
    if (!places_.empty())
        pRows_->prefetchTexts(places_.front());
    if (auto pRow = spare_.spare()) {
        pRow->reset(pBatch, nRow);
        return pRow;
    }
    auto pRow = std::make_shared<ColumnRow>(pFields_, pBatch, nRow);
    spare_.add(pRow);
    return pRow;
}

} // namespace halvane::host::gdal
