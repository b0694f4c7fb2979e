#pragma once

#include "host/gdal/rows/ColumnBatch.h"
#include "host/gdal/rows/SpareRows.h"
#include "host/gdal/source/HandlePool.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// All rows of a table, by columns, in the order of their identifiers.
class KeptRows {
public:
    /// Reads the table once. @param lMostBytes what it may take, by its own estimate.
    /// @returns nothing for a table that is read only surely row by row, and for one that takes more.
    [[nodiscard]] static std::shared_ptr<const KeptRows>
    tryRead(const LayerHandle& layer, const GdalFields& fields, std::size_t lMostBytes);

    /// Calls with the identifier and the cell of a column of each row, until told false. @returns whether it
    /// was not.
    [[nodiscard]] bool forEachCell(std::size_t lColumn,
                                   const std::function<bool(std::int64_t, const Cell&)>& fnTake) const;
    /// The batch that a row stands in, and its number there. @throws Failure when there is no such row.
    [[nodiscard]] std::pair<const ColumnBatchPtr&, std::size_t> find(std::int64_t lId) const;

private:
    std::vector<ColumnBatchPtr> batches_; // none is empty
    std::vector<std::int64_t> lastIds_;   // of the batches
};
using KeptRowsPtr = std::shared_ptr<const KeptRows>;

/// Some of these rows, in the order of a list.
class KeptRowsCursor final : public GisCursor {
public:
    /// @param pOwner keeps the identifiers.
    KeptRowsCursor(GdalFieldsPtr pFields, KeptRowsPtr pRows, std::span<const std::int64_t> ids,
                   std::shared_ptr<const void> pOwner)
        : pFields_(std::move(pFields)), pRows_(std::move(pRows)), ids_(ids), pOwner_(std::move(pOwner)) {}

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    GdalFieldsPtr pFields_;
    KeptRowsPtr pRows_;
    std::span<const std::int64_t> ids_; // of the rows to come
    std::shared_ptr<const void> pOwner_;
    SpareRows<ColumnRow> spare_;
};

} // namespace halvane::host::gdal
