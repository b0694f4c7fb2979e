#pragma once

#include "host/gdal/rows/BatchFilling.h"
#include "host/gdal/source/RowCollector.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace halvane::host::gdal {

/// How a stored value becomes one of a row.
struct ColumnSource {
    ColumnKind kind = ColumnKind::Text;
    bool bSmall = false; ///< an integer of 16 bits
    bool bTime = false;  ///< a date with a time
};

/// Fills batches with rows of stored values, as long as each is in the form that its type prescribes.
class StoredFilling final : public RowCollector, public BatchFilling {
public:
    /// @param sources in the order of a row's cells; the first is the object identifier.
    StoredFilling(std::span<const ColumnSource> sources, std::int64_t lLastId, Exchange fnExchange);

    [[nodiscard]] bool add(std::span<sqlite3_value*> values) override;

private:
    [[nodiscard]] bool addCell(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addInteger(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addText(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addBytes(const ColumnSource& source, sqlite3_value* pValue);
    [[nodiscard]] bool addBlob(std::string_view sBlob);

    std::span<const ColumnSource> sources_;
};

} // namespace halvane::host::gdal
