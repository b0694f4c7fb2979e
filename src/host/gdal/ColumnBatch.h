#pragma once

#include "host/gdal/Fields.h"

#include <ogr_recordbatch.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace halvane::host::gdal {

/// A C structure of the library's columnar reading, released with its owner.
template<class Struct>
class Released {
public:
    Released() = default;
    Released(const Released&) = delete;
    Released& operator=(const Released&) = delete;
    ~Released() {
        if (data_.release != nullptr) {
            data_.release(&data_);
        }
    }

    [[nodiscard]] Struct* get() { return &data_; }
    [[nodiscard]] const Struct* operator->() const { return &data_; }
    [[nodiscard]] Struct* operator->() { return &data_; }

private:
    Struct data_{};
};

/// One column of a batch: where a row's value stands in memory.
struct BatchColumn {
    ColumnKind kind = ColumnKind::Text;
    const std::uint8_t* pValid = nullptr; ///< a bit for each row that has a value; nothing when all have
    const void* pValues = nullptr;        ///< numbers and dates, or the offsets of texts and bytes
    const char* pHeap = nullptr;          ///< texts and bytes

    [[nodiscard]] bool isNull(std::size_t lRow) const {
        return pValid != nullptr && ((pValid[lRow / 8] >> (lRow % 8)) & 1U) == 0;
    }
    template<class Number>
    [[nodiscard]] Number number(std::size_t lRow) const {
        return static_cast<const Number*>(pValues)[lRow];
    }
    [[nodiscard]] std::string_view bytes(std::size_t lRow) const {
        const auto* pOffsets = static_cast<const std::int32_t*>(pValues);
        return {pHeap + pOffsets[lRow], static_cast<std::size_t>(pOffsets[lRow + 1] - pOffsets[lRow])};
    }
};

/// Values of one column that were read apart from a batch, one for each of its rows.
struct SideColumn {
    ColumnKind kind = ColumnKind::Integer; ///< Integer or Date
    std::vector<std::uint8_t> valid;
    std::vector<std::int32_t> integers;
    std::vector<Date> dates;

    [[nodiscard]] BatchColumn view() const;
};

/// Consecutive rows, column by column. Immutable once complete; its rows share it.
struct ColumnBatch {
    Released<ArrowArray> array;
    std::vector<SideColumn> sides;
    std::vector<BatchColumn> columns; ///< in the order of the table's fields
    const std::int64_t* pIds = nullptr;

    [[nodiscard]] std::size_t rowCount() const { return static_cast<std::size_t>(array->length); }
};
using ColumnBatchPtr = std::shared_ptr<const ColumnBatch>;

/// A row of a batch, which it keeps in memory.
class ColumnRow : public GisRow {
public:
    ColumnRow(GdalFieldsPtr pFields, ColumnBatchPtr pBatch, std::size_t lRow)
        : pFields_(std::move(pFields)), pBatch_(std::move(pBatch)), lRow_(lRow) {}

    [[nodiscard]] const GisFields& fields() const override { return *pFields_; }
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override;
    [[nodiscard]] std::int64_t objectId() const override { return pBatch_->pIds[lRow_]; }
    /// Made when it is first asked for.
    [[nodiscard]] GisGeometryPtr shape() const override;

    /// Makes this another row. Only for its cursor, when nobody else holds the row.
    void reset(const ColumnBatchPtr& pBatch, std::size_t lRow);

private:
    GdalFieldsPtr pFields_;
    ColumnBatchPtr pBatch_;
    std::size_t lRow_;
    mutable GisGeometryPtr pShape_;
    mutable bool bShapeMade_ = false;
};

} // namespace halvane::host::gdal
