#pragma once

#include "host/memory/Fields.h"

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace halvane::host::memory {

/// What a row holds. Fields beyond the values are null.
struct RowData {
    MemoryFieldsPtr pFields;
    std::int64_t nObjectId = 0;
    std::vector<Value> aValues;
    std::map<std::int32_t, std::vector<std::byte>> bytesByField;
};
using RowDataPtr = std::shared_ptr<const RowData>;

class MemoryRow final : public GisRow, private Scripted {
public:
    MemoryRow(RowDataPtr pData, std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), pData_(std::move(pData)) {}

    [[nodiscard]] const GisFields& fields() const override;
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override;
    [[nodiscard]] std::int64_t objectId() const override;
    [[nodiscard]] GisGeometryPtr shape() const override;

private:
    RowDataPtr pData_;
};

/// Reads the rows that were there when it was made.
class MemoryCursor final : public GisCursor, private Scripted {
public:
    MemoryCursor(std::vector<RowDataPtr> aRows, std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), aRows_(std::move(aRows)) {}

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    std::vector<RowDataPtr> aRows_;
    std::size_t nNext_ = 0;
};

} // namespace halvane::host::memory
