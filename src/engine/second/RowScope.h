#pragma once

#include "engine/ExportState.h"

#include <cstdint>
#include <utility>

namespace halvane {

/// The rows of one loop around what is written: the current one, and those around it. It is the innermost one
/// while it lives.
class RowScope {
public:
    /// @param pTable whose rows they are; may be nothing.
    RowScope(ExportState& state, host::GisTablePtr pTable)
        : state_(state), pAround_(state.pRowScope), pTable_(std::move(pTable)) {
        state.pRowScope = this;
    }
    RowScope(const RowScope&) = delete;
    RowScope& operator=(const RowScope&) = delete;
    ~RowScope() { state_.pRowScope = pAround_; }

    /// The loop looks at a row, and may pass it over. @param row borrowed until the next one.
    void look(const host::GisRow& row) noexcept { pRow_ = &row; }
    /// The loop turns to its next row.
    void turnTo(const host::GisRow& row) noexcept {
        look(row);
        ++lItem_;
    }

    [[nodiscard]] const host::GisRow* row() const noexcept { return pRow_; }
    [[nodiscard]] const host::GisTablePtr& table() const noexcept { return pTable_; }
    /// Counts from 1.
    [[nodiscard]] std::int64_t item() const noexcept { return lItem_; }
    /// That of the loop around; nothing around the outermost.
    [[nodiscard]] const RowScope* around() const noexcept { return pAround_; }

private:
    ExportState& state_;
    const RowScope* pAround_;
    host::GisTablePtr pTable_;
    const host::GisRow* pRow_ = nullptr;
    std::int64_t lItem_ = 0;
};

} // namespace halvane
