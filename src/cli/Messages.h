#pragma once

#include "cli/ExportLog.h"

#include <string>
#include <string_view>

namespace halvane::cli {

/// The name of a kind of notice, as the report spells it.
[[nodiscard]] std::string_view nameOf(Notice notice);

/// What happened at a control node and what to do about it, in one sentence without the place.
/// @param bHasMap whether the export had a map document.
[[nodiscard]] std::string explain(const ControlNodeFacts& facts, const NodeEvent& event, bool bHasMap);

} // namespace halvane::cli
