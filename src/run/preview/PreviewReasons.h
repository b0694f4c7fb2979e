#pragma once

#include "engine/ExportState.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

// What was at hand while a control node was at work, in words. None of them throws for a host that fails to
// tell: what it does not tell is left out.

/// What the node itself says and found: its attributes of the second edition, and the object that is bound.
/// @param bFound whether it found one.
[[nodiscard]] std::vector<std::string> reasonsOfNode(const ExportState& state, const ControlNode& control,
                                                     bool bFound);
/// How the reason of a leaf ends whose field is null.
inline constexpr std::string_view sOfNull = ", which is null";
/// Where the one value of a leaf comes from: "field "NAME" of row 4 of "towns""; "" where nothing is known.
[[nodiscard]] std::string reasonOfLeaf(const ExportState& state, const ControlNode& control);
/// The item that a repeated node is at, behind a colon: ": row 4 of "towns""; "" where nothing is known.
[[nodiscard]] std::string itemAtHand(const ExportState& state, const ControlNode& repeated);

} // namespace halvane
