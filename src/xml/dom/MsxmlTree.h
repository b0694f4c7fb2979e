#pragma once

#include "xml/dom/Msxml.h"
#include "xml/dom/MsxmlSource.h"

namespace halvane::dom::msxml {

/// Builds our tree of a loaded document. Lines, the XML declaration and the document type come from the
/// source.
void buildTree(IXMLDOMDocument2& document, const Source& source, TreeBuilder& builder);

} // namespace halvane::dom::msxml
