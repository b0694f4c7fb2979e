#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane::cli {

/// Opens the document whose nodes at a path pair tag names with aliases.
/// @param sDocument,sNodePath as typed.
/// @param warnings gets a line when the path selects nothing, or a node without the two attributes.
/// @param problems gets a line when the document cannot be read or the path is no XPath.
/// @returns nothing when there are problems.
[[nodiscard]] dom::DocumentPtr openTagDocument(const std::string& sDocument, const std::string& sNodePath,
                                               std::vector<std::string>& warnings,
                                               std::vector<std::string>& problems);

} // namespace halvane::cli
