#pragma once

#include "host/Rows.h"
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

/// Whether a search read the shapes of its rows.
enum class Shapes { Read, Unread };

class MemoryRow final : public GisRow, private Scripted {
public:
    MemoryRow(RowDataPtr pData, std::shared_ptr<FaultScript> pFaults, Shapes shapes)
        : Scripted(std::move(pFaults)), pData_(std::move(pData)), shapes_(shapes) {}

    [[nodiscard]] const GisFields& fields() const override;
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override;
    [[nodiscard]] std::int64_t objectId() const override;
    [[nodiscard]] GisGeometryPtr shape() const override;

private:
    /// @throws Failure HostFailure, so that nobody mistakes an unread shape for none.
    void requireShapes() const;

    RowDataPtr pData_;
    Shapes shapes_;
};

/// Reads the rows that were there when it was made.
class MemoryCursor final : public GisCursor, private Scripted {
public:
    MemoryCursor(std::vector<RowDataPtr> aRows, std::shared_ptr<FaultScript> pFaults,
                 Shapes shapes = Shapes::Read)
        : Scripted(std::move(pFaults)), aRows_(std::move(aRows)), shapes_(shapes) {}

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    std::vector<RowDataPtr> aRows_;
    std::size_t nNext_ = 0;
    Shapes shapes_;
};

} // namespace halvane::host::memory
