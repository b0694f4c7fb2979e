#pragma once

#include "engine/ModExporter.h"
#include "engine/second/RowRules.h"
#include "host/Rows.h"

namespace halvane {

/// The rows of a table whose link fields equal those of the row around. Nulls equal nothing; numbers are
/// compared as numbers, texts exactly, and never with each other.
class LinkedRows final : public host::GisCursor {
public:
    /// @param links,around borrowed while rows are read.
    LinkedRows(ExportState& state, host::GisTable& table, std::vector<RowRules::Link>& links,
               const host::GisRow& around);

    [[nodiscard]] host::GisRowPtr nextRow() override;

private:
    [[nodiscard]] bool matches(const host::GisRow& related) const;

    ExportState& state_;
    std::vector<RowRules::Link>& links_;
    const host::GisRow& around_;
    host::GisCursorPtr pCursor_; ///< nothing: no row matches
};

} // namespace halvane
