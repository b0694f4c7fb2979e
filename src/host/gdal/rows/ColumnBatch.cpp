#include "host/gdal/rows/ColumnBatch.h"

#include "base/Failure.h"
#include "host/Geometry.h"

#include <algorithm>

namespace halvane::host::gdal {

namespace {
constexpr std::size_t nChunkBytes = 128U << 10U;
} // namespace

std::string_view Heap::add(std::string_view sBytes) {
    while (nChunk_ < chunks_.size() && chunks_[nChunk_].capacity() - chunks_[nChunk_].size() < sBytes.size())
        ++nChunk_;
    if (nChunk_ == chunks_.size())
        chunks_.emplace_back().reserve(std::max(nChunkBytes, sBytes.size()));
    std::vector<char>& chunk = chunks_[nChunk_];
    const std::size_t nAt = chunk.size();
    chunk.insert(chunk.end(), sBytes.begin(), sBytes.end());
    nBytes_ += sBytes.size();
    return {chunk.data() + nAt, sBytes.size()};
}

void Heap::clear() {
    std::erase_if(chunks_, [](const std::vector<char>& chunk) { return chunk.capacity() > nChunkBytes; });
    for (std::vector<char>& chunk : chunks_)
        chunk.clear();
    nChunk_ = 0;
    nBytes_ = 0;
}

void ColumnBatch::clear() {
    cells.clear();
    ids.clear();
    shapes.clear();
    points.clear();
    heap.clear();
}

void ColumnRow::reset(const ColumnBatchPtr& pBatch, std::size_t nRow) {
    if (pBatch_ != pBatch)
        pBatch_ = pBatch;
    nRow_ = nRow;
}

namespace {

/// The batch stays as long as the point.
GisGeometryPtr pointOf(const ColumnBatchPtr& pBatch, PointIndex index) {
    return {pBatch, &pBatch->points.at(index.nPoint)};
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
    ValueView operator()(ShapeIndex index) const { return ObjectPtr(pBatch->shapes[index.nShape]); }
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
    return pIndex == nullptr ? nullptr : pBatch_->shapes[pIndex->nShape];
}

} // namespace halvane::host::gdal
