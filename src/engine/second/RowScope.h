#pragma once

#include "engine/ExportState.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace halvane {

struct RowShape;

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
    void look(const host::GisRow& row) noexcept {
        pRow_ = &row;
        pShape_.reset();
    }
    /// The loop turns to its next row.
    void turnTo(const host::GisRow& row) noexcept {
        look(row);
        ++lItem_;
    }

    [[nodiscard]] const host::GisRow* row() const noexcept { return pRow_; }
    [[nodiscard]] const host::GisTablePtr& table() const noexcept { return pTable_; }
    /// What a node has made of the row's shape, for those that ask for it after it; nothing at first.
    [[nodiscard]] std::shared_ptr<const RowShape>& shape() const noexcept { return pShape_; }
    /// Counts from 1.
    [[nodiscard]] std::int64_t item() const noexcept { return lItem_; }
    /// That of the loop around; nothing around the outermost.
    [[nodiscard]] const RowScope* around() const noexcept { return pAround_; }

private:
    ExportState& state_;
    const RowScope* pAround_;
    host::GisTablePtr pTable_;
    const host::GisRow* pRow_ = nullptr;
    mutable std::shared_ptr<const RowShape> pShape_;
    std::int64_t lItem_ = 0;
};

/// The table of a row that a loop is at; nothing for any other row.
[[nodiscard]] inline host::GisTablePtr tableOf(const ExportState& state, const host::GisRow& row) {
    for (const RowScope* pScope = state.pRowScope; pScope != nullptr; pScope = pScope->around())
        if (pScope->row() == &row)
            return pScope->table();
    return nullptr;
}

} // namespace halvane
