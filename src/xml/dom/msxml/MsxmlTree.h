#pragma once

#include "xml/dom/msxml/Msxml.h"
#include "xml/dom/msxml/MsxmlSource.h"

namespace halvane::dom::msxml {

/// Builds our tree of a loaded document. Lines, the XML declaration and the document type come from the
/// source.
void buildTree(IXMLDOMDocument2& document, const Source& source, TreeBuilder& builder);

} // namespace halvane::dom::msxml
