#pragma once

#include "engine/ModExporter.h"
#include "engine/second/RowRules.h"

namespace halvane {

/// The rows that a relationship class relates to the row around, found from either side; through its link
/// table where there is one. The table they are of becomes the current related one.
/// @param rules name the class.
/// @throws Failure when the row's data knows no such class, when the class is of other tables, and when the
/// direction is missing of a class between a table and itself.
[[nodiscard]] host::GisCursorPtr searchRelationship(ExportState& state, const RowRules& rules);

} // namespace halvane
