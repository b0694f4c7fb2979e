#pragma once

#include "telling/ExportLog.h"

#include <string>
#include <string_view>

namespace halvane {

/// What to do about a name that was not found: what the person may have meant, what there is, or how to ask
/// for the thing that bears the name. Asks the host, so it is not for every row.
/// @returns a clause without its full stop; "" where nothing is known that helps.
[[nodiscard]] std::string nameHint(const ControlNodeFacts& facts, Notice notice, std::string_view sDetail,
                                   const Surroundings& around);

} // namespace halvane
