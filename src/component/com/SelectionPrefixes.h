#pragma once

#include "xml/dom/Dom.h"

struct IXMLDOMDocument;

namespace halvane::server {

/// Lets selections in a copy of a client's document know the prefixes that the client has set for its own
/// selections, its property "SelectionNamespaces". A prefix that the root element declares keeps its meaning.
void takeSelectionPrefixes(IXMLDOMDocument& document, dom::Document& copy);

} // namespace halvane::server
