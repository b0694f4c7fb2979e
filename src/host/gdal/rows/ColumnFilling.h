#pragma once

#include "host/gdal/rows/ColumnBatch.h"
#include "host/gdal/source/RowCollector.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace halvane::host::gdal {

/// How a stored value becomes one of a row.
struct ColumnSource {
    ColumnKind kind = ColumnKind::Text;
    bool bSmall = false; ///< an integer of 16 bits
    bool bTime = false;  ///< a date with a time
};

/// Fills batches with rows of stored values, as long as each is in the form that its type prescribes.
class ColumnFilling final : public RowCollector {
public:
    /// Takes a full batch. @returns the next one to fill, empty; nothing when no more are wanted.
    using Exchange = std::function<ColumnBatchPtr(ColumnBatchPtr)>;

    /// @param sources in the order of a row's cells; the first is the object identifier.
    ColumnFilling(std::span<const ColumnSource> sources, std::int64_t lLastId, Exchange fnExchange);

    [[nodiscard]] bool add(std::span<sqlite3_value*> values) override;
    /// Hands on the rows of a batch that is not full.
    void finish();

private:
    [[nodiscard]] bool addCell(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addInteger(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addText(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addBytes(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addShape(std::string_view sBlob);
    [[nodiscard]] bool isFull() const;
    [[nodiscard]] bool handOn();

    std::span<const ColumnSource> sources_;
    std::int64_t lLastId_;
    Exchange fnExchange_;
    ColumnBatchPtr pBatch_;
    std::size_t lShapeBytes_ = 0;
};

} // namespace halvane::host::gdal
