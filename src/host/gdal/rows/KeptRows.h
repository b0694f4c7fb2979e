#pragma once

#include "host/gdal/rows/ColumnBatch.h"
#include "host/gdal/rows/SpareRows.h"
#include "host/gdal/source/HandlePool.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// All rows of a table, by columns, in the order of their identifiers.
class KeptRows {
public:
    /// Reads the table once. @param nMostBytes what it may take, by its own estimate.
    /// @returns nothing for a table that is read only surely row by row, and for one that takes more.
    [[nodiscard]] static std::shared_ptr<const KeptRows>
    tryRead(const LayerHandle& layer, const GdalFields& fields, std::size_t nMostBytes);

    /// Calls with the place and the cell of a column of each row.
    void forEachCell(std::size_t nColumn, const std::function<void(std::int64_t, const Cell&)>& fnTake) const;
    /// Where the row of an identifier stands; nothing when there is no such row.
    [[nodiscard]] std::optional<std::int64_t> placeOf(std::int64_t lId) const;
    /// The batch that a place is in, and the number of its row there.
    [[nodiscard]] std::pair<const ColumnBatchPtr&, std::size_t> at(std::int64_t lPlace) const {
        return {batches_[static_cast<std::size_t>(lPlace >> 32)],
                static_cast<std::size_t>(lPlace & 0xffffffff)};
    }
    /// Rows of a key stand anywhere: waiting for their memory was a quarter of the time of related rows.
    /// It is asked for some rows ahead, and that of a row's texts once its cells are there.
    void prefetchCells(std::int64_t lPlace) const;
    void prefetchTexts(std::int64_t lPlace) const;

private:
    [[nodiscard]] std::span<const Cell> cellsAt(std::int64_t lPlace) const;

    std::size_t nColumns_ = 0;
    std::vector<ColumnBatchPtr> batches_; // none is empty
    std::vector<std::int64_t> lastIds_;   // of the batches
};
using KeptRowsPtr = std::shared_ptr<const KeptRows>;

/// Some of these rows, by a list of their places.
class KeptRowsCursor final : public GisCursor {
public:
    /// @param pOwner keeps the places.
    KeptRowsCursor(GdalFieldsPtr pFields, KeptRowsPtr pRows, std::span<const std::int64_t> places,
                   std::shared_ptr<const void> pOwner);

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    GdalFieldsPtr pFields_;
    KeptRowsPtr pRows_;
    std::span<const std::int64_t> places_; // of the rows to come
    std::shared_ptr<const void> pOwner_;
    SpareRows<ColumnRow> spare_;
};

} // namespace halvane::host::gdal
