#pragma once

#include "xml/dom/LibXml.h"

namespace halvane::dom::libxml {

/// Builds our tree from a parsed document and lets the nodes of both know each other. Texts that touch are
/// joined; white space between elements goes, from the parsed document too.
void buildTree(xmlDoc& doc, TreeBuilder& builder);

} // namespace halvane::dom::libxml
