#include "host/gdal/rows/KeptRows.h"

#include "host/gdal/rows/Geometry.h"
#include "host/gdal/rows/StoredColumns.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace halvane::host::gdal {

namespace {

std::size_t bytesOf(const ColumnBatch& batch) {
    constexpr std::size_t lBytesOfShape = 200;
    std::size_t lBytes = batch.cells.size() * sizeof(Cell) + batch.ids.size() * sizeof(std::int64_t) +
                         batch.heap.bytes() + batch.points.bytes();
    for (const GisGeometryPtr& pShape : batch.shapes)
        lBytes += lBytesOfShape + 2 * static_cast<const GdalGeometry&>(*pShape).geometry().WkbSize();
    return lBytes;
}

std::int64_t placeIn(std::size_t lBatch, std::size_t lRow) {
    return static_cast<std::int64_t>(lBatch << 32U | lRow);
}

} // namespace

KeptRowsPtr KeptRows::tryRead(const LayerHandle& layer, const GdalFields& fields, std::size_t lMostBytes) {
    const auto pReader = StoredColumns::tryOpen(layer, fields, std::numeric_limits<std::int64_t>::min());
    if (pReader == nullptr)
        return nullptr;
    auto pRows = std::make_shared<KeptRows>();
    pRows->nColumns_ = fields.columns().size();
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

void KeptRows::forEachCell(std::size_t lColumn,
                           const std::function<void(std::int64_t, const Cell&)>& fnTake) const {
    for (std::size_t lBatch = 0; lBatch < batches_.size(); ++lBatch) {
        const ColumnBatch& batch = *batches_[lBatch];
        for (std::size_t lRow = 0; lRow < batch.rowCount(); ++lRow)
            fnTake(placeIn(lBatch, lRow), batch.cells[lRow * nColumns_ + lColumn]);
    }
}

std::optional<std::int64_t> KeptRows::placeOf(std::int64_t lId) const {
    const auto lBatch = static_cast<std::size_t>(std::ranges::lower_bound(lastIds_, lId) - lastIds_.begin());
    if (lBatch == batches_.size())
        return std::nullopt;
    const std::vector<std::int64_t>& ids = batches_[lBatch]->ids;
    const auto id = std::ranges::lower_bound(ids, lId);
    if (*id != lId)
        return std::nullopt;
    return placeIn(lBatch, static_cast<std::size_t>(id - ids.begin()));
}

std::span<const Cell> KeptRows::cellsAt(std::int64_t lPlace) const {
    const auto [pBatch, lRow] = at(lPlace);
    return std::span(pBatch->cells).subspan(lRow * nColumns_, nColumns_);
}

void KeptRows::prefetchCells(std::int64_t lPlace) const {
    constexpr std::size_t lLineBytes = 64;
    const auto bytes = std::as_bytes(cellsAt(lPlace));
    for (std::size_t lByte = 0; lByte < bytes.size(); lByte += lLineBytes)
        __builtin_prefetch(bytes.data() + lByte);
}

void KeptRows::prefetchTexts(std::int64_t lPlace) const {
    for (const Cell& cell : cellsAt(lPlace))
        if (const auto* sText = std::get_if<std::string_view>(&cell))
            __builtin_prefetch(sText->data());
}

namespace {

constexpr std::size_t lRowsAhead = 4;

} // namespace

KeptRowsCursor::KeptRowsCursor(GdalFieldsPtr pFields, KeptRowsPtr pRows, std::span<const std::int64_t> places,
                               std::shared_ptr<const void> pOwner)
    : pFields_(std::move(pFields)), pRows_(std::move(pRows)), places_(places), pOwner_(std::move(pOwner)) {
    for (const std::int64_t lPlace : places_.first(std::min(places_.size(), lRowsAhead)))
        pRows_->prefetchCells(lPlace);
}

GisRowPtr KeptRowsCursor::nextRow() {
    if (places_.empty())
        return nullptr;
    const auto [pBatch, lRow] = pRows_->at(places_.front());
    if (places_.size() > lRowsAhead)
        pRows_->prefetchCells(places_[lRowsAhead]);
    places_ = places_.subspan(1);
    if (!places_.empty())
        pRows_->prefetchTexts(places_.front());
    if (auto pRow = spare_.spare()) {
        pRow->reset(pBatch, lRow);
        return pRow;
    }
    auto pRow = std::make_shared<ColumnRow>(pFields_, pBatch, lRow);
    spare_.add(pRow);
    return pRow;
}

} // namespace halvane::host::gdal
