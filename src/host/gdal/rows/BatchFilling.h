#pragma once

#include "host/gdal/rows/ColumnBatch.h"
#include "host/gdal/rows/ReadAhead.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace halvane::host::gdal {

/// Fills one batch of rows after the other, on whatever thread reads them.
class BatchFilling {
public:
    /// Takes a full batch. @returns the next one to fill, empty; nothing when no more are wanted.
    using Exchange = std::function<ColumnBatchPtr(ColumnBatchPtr)>;

    /// @param lLastId the rows after this one are read, by ascending identifiers.
    BatchFilling(std::int64_t lLastId, Exchange fnExchange);
    BatchFilling(const BatchFilling&) = delete;
    BatchFilling& operator=(const BatchFilling&) = delete;

    /// Hands on the rows of a batch that is not full.
    void finish();

protected:
    ~BatchFilling() = default;

    /// The one that is filled, while more are wanted.
    [[nodiscard]] ColumnBatch& batch() const { return *pBatch_; }
    /// Whether a row may follow the last one.
    [[nodiscard]] bool mayFollow(std::int64_t lId) const { return pBatch_ != nullptr && lId > lLastId_; }
    /// Adds a shape in well-known binary. @returns whether it is one.
    [[nodiscard]] bool addShape(std::string_view sBinary);
    /// Ends the row whose cells were added. @returns whether more are wanted.
    [[nodiscard]] bool endRow(std::int64_t lId);

private:
    [[nodiscard]] bool isFull() const;
    [[nodiscard]] bool handOn();

    std::int64_t lLastId_;
    Exchange fnExchange_;
    ColumnBatchPtr pBatch_;
    std::size_t nShapeBytes_ = 0;
};

/// How a thread that reads ahead exchanges them.
[[nodiscard]] BatchFilling::Exchange exchangeWith(ReadAhead<ColumnBatchPtr>& ahead);

} // namespace halvane::host::gdal
