#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

/// Where the path of the tags was typed, and the document's name as messages show it.
struct TagPathNames {
    std::string sPathName = "--node-path";
    std::string sDocument;
};

/// Looks for what a person did not mean in the pairs of tag names and aliases at a path.
/// @param warnings gets a line when the path selects nothing, or a node without the two attributes.
/// @returns why the path is none; "" when it is one.
[[nodiscard]] std::string checkTagPath(const dom::DocumentPtr& oDocument, const std::string& sNodePath,
                                       const TagPathNames& names, std::vector<std::string>& warnings);

/// Opens the document whose nodes at a path pair tag names with aliases.
/// @param sDocument,sNodePath as typed.
/// @param warnings gets a line when the path selects nothing, or a node without the two attributes.
/// @param problems gets a line when the document cannot be read or the path is no XPath.
/// @returns nothing when there are problems.
[[nodiscard]] dom::DocumentPtr openTagDocument(const std::string& sDocument, const std::string& sNodePath,
                                               std::vector<std::string>& warnings,
                                               std::vector<std::string>& problems);

} // namespace halvane
