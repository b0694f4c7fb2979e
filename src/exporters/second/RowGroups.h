#pragma once

#include "engine/ModExporter.h"
#include "engine/second/RowRules.h"

#include <vector>

namespace halvane {

using RowGroup = std::vector<host::GisRowPtr>;

/// The rows of a cursor, those with the same value of the node's group together, in the order in which the
/// values come first. All rows are held.
/// @param pTable whose rows they are. @param rules have a group.
/// @throws Failure when the rows cannot be read.
[[nodiscard]] std::vector<RowGroup> groupRows(ExportState& state, const host::GisTablePtr& pTable,
                                              const RowRules& rules, host::GisCursorPtr pCursor);

/// The rows of the innermost group of a table's rows around; nothing where there is none.
[[nodiscard]] host::GisCursorPtr searchGroup(const ExportState& state, const host::GisTablePtr& pTable);

} // namespace halvane
