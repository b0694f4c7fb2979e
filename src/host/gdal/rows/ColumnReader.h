#pragma once

#include "host/gdal/rows/ColumnBatch.h"

namespace halvane::host::gdal {

/// Reads the rest of a table on a thread, straight from its database: no feature is made of a row. What it
/// yields is what the row loop would yield; where that is not certain (a value out of its type's form, any
/// failure) it ends, and the row loop takes over after the last row.
class ColumnReader {
public:
    ColumnReader() = default;
    ColumnReader(const ColumnReader&) = delete;
    ColumnReader& operator=(const ColumnReader&) = delete;
    virtual ~ColumnReader() = default;

    /// The next batch; nothing at the end of what columns can yield.
    /// @param pUsed a batch that nobody else holds, or nothing.
    [[nodiscard]] virtual ColumnBatchPtr next(ColumnBatchPtr pUsed) = 0;
    /// After the last batch: whether the table has no rows behind those that were read or left out.
    [[nodiscard]] virtual bool reachedEnd() const noexcept = 0;
};

} // namespace halvane::host::gdal
