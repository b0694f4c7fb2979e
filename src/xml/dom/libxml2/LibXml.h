#pragma once

// Ownership and texts of libxml2. Only the files of this backend include it.

#include "base/Owned.h"
#include "xml/dom/Backend.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xpath.h>
#include <memory>
#include <string>
#include <string_view>

namespace halvane::dom::libxml {

inline void freeText(xmlChar* pText) noexcept {
    xmlFree(pText);
}

using DocPtr = Owned<xmlDoc, xmlFreeDoc>;
using NodePtr = Owned<xmlNode, xmlFreeNode>;
using BufferPtr = Owned<xmlBuffer, xmlBufferFree>;
using TextPtr = Owned<xmlChar, freeText>;

[[nodiscard]] inline const char* chars(const xmlChar* pText) noexcept {
    return pText == nullptr ? "" : reinterpret_cast<const char*>(pText);
}
[[nodiscard]] inline std::string_view view(const xmlChar* pText) noexcept {
    return chars(pText);
}
[[nodiscard]] inline const xmlChar* bytes(const std::string& sText) noexcept {
    return reinterpret_cast<const xmlChar*>(sText.c_str());
}
[[nodiscard]] inline std::string_view view(const xmlChar* pText, int nSize) noexcept {
    return {reinterpret_cast<const char*>(pText), static_cast<std::size_t>(nSize)};
}

/// The name with its prefix, in `sBuffer` unless there is no prefix.
[[nodiscard]] inline std::string_view qualified(const xmlNs* pNamespace, const xmlChar* pName,
                                                std::string& sBuffer) {
    if (pNamespace == nullptr || pNamespace->prefix == nullptr)
        return view(pName);
    sBuffer.assign(view(pNamespace->prefix)).append(":").append(view(pName));
    return sBuffer;
}

/// The library's message as one line.
[[nodiscard]] std::string oneLine(const char* pMessage);

/// The library wants to be initialised before any other thread uses it.
void initialise();

/// A mirror that consists of a parsed or copied document, whose nodes know ours and ours them.
[[nodiscard]] std::unique_ptr<Mirror> mirrorOf(DocPtr pDoc);

/// Lets a mirror's node and a node of ours know each other.
template<class LibraryNode>
void pair(LibraryNode& mirrored, NodeData& node) noexcept {
    mirrored._private = &node;
    node.pMirror = &mirrored;
}

} // namespace halvane::dom::libxml
