#pragma once

// What a document type adds to a document. The library weighs how often the text of an entity is used, but
// neither default attributes nor the nodes that it copies.

#include "xml/dom/libxml2/LibXml.h"

namespace halvane::dom::libxml {

/// Counts the default attributes of an element: the last nDefaulted of the attributes that the library's
/// callback is given. @returns false, with the document refused and the parser stopped, beyond growthLimit().
[[nodiscard]] bool growByDefaults(xmlParserCtxt& parser, int nAttributes, int nDefaulted,
                                  const xmlChar* const* ppAttributes) noexcept;

/// Counts an attribute that the document type declares for an element: the library compares defaults with
/// each other. @returns false, with the document refused and the parser stopped, beyond mostAttributes.
[[nodiscard]] bool acceptDeclaredAttribute(xmlParserCtxt& parser, const xmlChar* pElement) noexcept;

/// Counts what a reference to an internal entity copies: what was parsed at the first reference is copied at
/// each later one.
void growByCopy(xmlParserCtxt& parser, const xmlEntity& entity) noexcept;

/// Counts what a reference to a parameter entity adds to the document type. @returns false, with the document
/// refused and the parser stopped, beyond growthLimit(): the library itself may go round for ever then.
[[nodiscard]] bool growByParameter(xmlParserCtxt& parser, const xmlEntity& entity) noexcept;

} // namespace halvane::dom::libxml
