#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

/// Loads the document that standard input holds, to its end, in the encoding that it declares. A request for
/// an orderly end ends the reading.
/// @param sShown the name that problems begin with.
/// @param problems gets a line when it cannot be read. @param error what the parser found then.
/// @returns nothing then.
[[nodiscard]] dom::DocumentPtr loadStandardInput(const std::string& sShown,
                                                 std::vector<std::string>& problems, dom::ParseError& error);

} // namespace halvane
