#pragma once

#include "host/gdal/rows/ColumnReader.h"
#include "host/gdal/rows/SpareRows.h"
#include "host/gdal/source/HandlePool.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace halvane::host::gdal {

/// Makes rows of what columns yield, and uses batches and rows again that nobody holds.
class ColumnRows {
public:
    /// @param lLastId the rows after this one are read.
    /// @param sCondition rows for which it does not hold are left out; "" for none.
    /// @returns nothing for a table that is read only surely row by row.
    [[nodiscard]] static std::unique_ptr<ColumnRows> tryOpen(const LayerHandle& layer,
                                                             const GdalFieldsPtr& pFields,
                                                             std::int64_t lLastId,
                                                             const std::string& sCondition);

    ColumnRows(std::unique_ptr<ColumnReader> pReader, GdalFieldsPtr pFields, std::int64_t lLastId)
        : pReader_(std::move(pReader)), pFields_(std::move(pFields)), lLastId_(lLastId) {}

    /// Nothing at the end of what columns yield: what stands behind the last row is read in another way.
    [[nodiscard]] GisRowPtr next();
    /// The identifier of the row that came last; at the end of the table the greatest one.
    [[nodiscard]] std::int64_t lastId() const { return lLastId_; }

private:
    void turnToNextBatch();

    std::unique_ptr<ColumnReader> pReader_;
    GdalFieldsPtr pFields_;
    std::int64_t lLastId_;
    ColumnBatchPtr pBatch_;
    std::size_t nBatchRow_ = 0;
    ColumnBatchPtr pEarlierBatch_;
    SpareRows<ColumnRow> rows_;
};

} // namespace halvane::host::gdal
