#pragma once

#include "base/com/Windows.h"
#include "xml/dom/Dom.h"

struct IXMLDOMDocument;

namespace halvane::server {

/// The present content of a document that a client keeps in the system's parser; nothing for none. The
/// document type is left out: what it says of attributes and entities is in the nodes already.
/// @throws Failure what the document reports.
[[nodiscard]] dom::DocumentPtr presentContentOf(IXMLDOMDocument* oDocument);

} // namespace halvane::server
