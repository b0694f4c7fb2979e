#pragma once

#include "engine/ModExporter.h"
#include "engine/second/RowRules.h"
#include "engine/second/RowScope.h"

namespace halvane {

/// How many items a node writes at most. @throws Failure when the limit is no whole number.
[[nodiscard]] std::int64_t limitOf(ExportState& state, const RowRules& rules);

/// The rows of a cursor for which a node's condition holds, in the order that it asks for. Rows in an order
/// are held, all of them, before the first is given.
class OrderedRows {
public:
    /// @param scope of the loop over these rows. @param rules borrowed while rows are read.
    OrderedRows(ExportState& state, RowScope& scope, const RowRules& rules, host::GisCursorPtr pCursor,
                std::int64_t lMost);

    /// The next row, which the scope has turned to; nothing at the end.
    [[nodiscard]] host::GisRowPtr next();

private:
    struct Held {
        host::GisRowPtr pRow;
        std::vector<Value> keys;
    };

    [[nodiscard]] host::GisRowPtr nextThatHolds();
    void holdAll();

    ExportState& state_;
    RowScope& scope_;
    const RowRules& rules_;
    host::GisCursorPtr pCursor_; ///< nothing: all rows are held
    std::vector<Held> held_;
    std::size_t nNextHeld_ = 0;
    std::int64_t lLeft_;
};

} // namespace halvane
