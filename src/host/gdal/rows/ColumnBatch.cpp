#include "host/gdal/rows/ColumnBatch.h"

#include "base/Failure.h"
#include "host/Geometry.h"

#include <algorithm>

namespace halvane::host::gdal {

namespace {
constexpr std::size_t lChunkBytes = 128U << 10U;
} // namespace

std::string_view Heap::add(std::string_view sBytes) {
    while (lChunk_ < chunks_.size() && chunks_[lChunk_].capacity() - chunks_[lChunk_].size() < sBytes.size())
        ++lChunk_;
    if (lChunk_ == chunks_.size())
        chunks_.emplace_back().reserve(std::max(lChunkBytes, sBytes.size()));
    std::vector<char>& chunk = chunks_[lChunk_];
    const std::size_t lAt = chunk.size();
    chunk.insert(chunk.end(), sBytes.begin(), sBytes.end());
    lBytes_ += sBytes.size();
    return {chunk.data() + lAt, sBytes.size()};
}

void Heap::clear() {
    std::erase_if(chunks_, [](const std::vector<char>& chunk) { return chunk.capacity() > lChunkBytes; });
    for (std::vector<char>& chunk : chunks_)
        chunk.clear();
    lChunk_ = 0;
    lBytes_ = 0;
}

void ColumnBatch::clear() {
    cells.clear();
    ids.clear();
    shapes.clear();
    points.clear();
    heap.clear();
}

void ColumnRow::reset(const ColumnBatchPtr& pBatch, std::size_t lRow) {
    if (pBatch_ != pBatch)
        pBatch_ = pBatch;
    lRow_ = lRow;
}

namespace {

/// The batch stays as long as the point.
GisGeometryPtr pointOf(const ColumnBatchPtr& pBatch, PointIndex index) {
    return {pBatch, &pBatch->points.at(index.lPoint)};
}

/// The value of a cell that holds no shape.
struct CellValue {
    ValueView operator()(Null) const { return Null{}; }
    ValueView operator()(std::int32_t lValue) const { return lValue; }
    ValueView operator()(std::int64_t lValue) const { return lValue; }
    ValueView operator()(float fValue) const { return fValue; }
    ValueView operator()(double dValue) const { return dValue; }
    ValueView operator()(const Date& date) const { return date; }
    ValueView operator()(std::string_view sText) const { return sText; }
    ValueView operator()(Bytes bytes) const { return bytes; }
    ValueView operator()(ShapeIndex index) const { return ObjectPtr(pBatch->shapes[index.lShape]); }
    ValueView operator()(PointIndex index) const { return ObjectPtr(pointOf(pBatch, index)); }

    const ColumnBatchPtr& pBatch;
};

} // namespace

ValueView ColumnRow::value(std::int32_t lIndex) const {
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= pFields_->columns().size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return std::visit(CellValue{pBatch_}, cell(static_cast<std::size_t>(lIndex)));
}

GisGeometryPtr ColumnRow::shape() const {
    if (!pFields_->hasShape())
        return nullptr;
    // The shape's field comes second.
    const Cell& shape = cell(1);
    if (const auto* pPoint = std::get_if<PointIndex>(&shape))
        return pointOf(pBatch_, *pPoint);
    const auto* pIndex = std::get_if<ShapeIndex>(&shape);
    return pIndex == nullptr ? nullptr : pBatch_->shapes[pIndex->lShape];
}

} // namespace halvane::host::gdal
