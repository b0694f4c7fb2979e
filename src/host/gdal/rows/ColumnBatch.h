#pragma once

#include "host/Rows.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/rows/PlainPoint.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <variant>
#include <vector>

namespace halvane::host::gdal {

/// A shape of a batch, by its place there.
struct ShapeIndex {
    std::size_t nShape = 0;
};

/// A plain point of a batch, by its place there.
struct PointIndex {
    std::size_t nPoint = 0;
};

/// One value of a batch; texts and bytes stand in the batch's heap.
using Cell = std::variant<Null, std::int32_t, std::int64_t, float, double, Date, std::string_view, Bytes,
                          ShapeIndex, PointIndex>;

/// Texts and bytes that stay where they are until all are dropped at once.
class Heap {
public:
    [[nodiscard]] std::string_view add(std::string_view sBytes);
    /// Keeps the memory for the next ones.
    void clear();
    [[nodiscard]] std::size_t bytes() const { return nBytes_; }

private:
    std::vector<std::vector<char>> chunks_; // none grows past its capacity
    std::size_t nChunk_ = 0;                // the one that is filled
    std::size_t nBytes_ = 0;
};

/// Rows that follow one another, read together. Immutable once complete; its rows share it.
struct ColumnBatch {
    std::vector<Cell> cells;       ///< row by row, in the order of the table's fields
    std::vector<std::int64_t> ids; ///< one a row
    std::vector<GisGeometryPtr> shapes;
    PlainPoints points;
    Heap heap;

    [[nodiscard]] std::size_t rowCount() const { return ids.size(); }
    void clear();
};
using ColumnBatchPtr = std::shared_ptr<ColumnBatch>;

/// A row of a batch, which it keeps in memory.
class ColumnRow : public GisRow {
public:
    ColumnRow(GdalFieldsPtr pFields, ColumnBatchPtr pBatch, std::size_t nRow)
        : pFields_(std::move(pFields)), pBatch_(std::move(pBatch)), nRow_(nRow) {}

    [[nodiscard]] const GisFields& fields() const override { return *pFields_; }
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override;
    [[nodiscard]] std::int64_t objectId() const override { return pBatch_->ids[nRow_]; }
    [[nodiscard]] GisGeometryPtr shape() const override;

    /// Makes this another row. Only for its cursor, when nobody else holds the row.
    void reset(const ColumnBatchPtr& pBatch, std::size_t nRow);
    /// Lets the batch go; the row cannot be read until it is made another one.
    void release() { pBatch_.reset(); }

private:
    [[nodiscard]] const Cell& cell(std::size_t nColumn) const {
        return pBatch_->cells[nRow_ * pFields_->columns().size() + nColumn];
    }

    GdalFieldsPtr pFields_;
    ColumnBatchPtr pBatch_;
    std::size_t nRow_;
};

} // namespace halvane::host::gdal
