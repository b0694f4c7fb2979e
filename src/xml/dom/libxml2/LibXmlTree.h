#pragma once

#include "xml/dom/libxml2/LibXml.h"

#include <cstdint>
#include <optional>

namespace halvane::dom::libxml {

/// Builds our tree from a parsed document and lets the nodes of both know each other. Texts that touch are
/// joined; white space between elements goes, from the parsed document too.
/// @returns the line of the first element that is nested too deeply, with the tree half built: entities
/// inside
///          entities can nest deeper than a parser that reads one at a time sees.
[[nodiscard]] std::optional<std::uint32_t> buildTree(xmlDoc& doc, TreeBuilder& builder);

} // namespace halvane::dom::libxml
