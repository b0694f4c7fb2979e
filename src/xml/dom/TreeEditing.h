#pragma once

// Changes of the tree below the published interface: no checks of what may stand where.

#include "xml/dom/DocumentImpl.h"

namespace halvane::dom {

/// Links a detached node of the same document in front of `pBefore`, or as the last child.
void link(NodeData& parent, NodeData& child, NodeData* pBefore) noexcept;
/// Takes the node out of its parent; a node without one is left alone.
void unlink(NodeData& node) noexcept;

/// Appends an attribute to the element.
NodeData& addAttribute(NodeData& element, const Name* pName, std::string_view sValue);
[[nodiscard]] NodeData* findAttribute(const NodeData& element, std::string_view sName) noexcept;

/// Gives the detached node back to the store with everything under it.
void destroyTree(NodeData& top) noexcept;
/// A detached copy in the same document.
[[nodiscard]] NodeData& cloneTree(const NodeData& top, bool bDeep);
/// Makes a tree of another document, wherever it is linked, a tree of this one. All or nothing. The other
/// document may end with it: who goes on with that one holds it.
void adopt(NodeData& top, Document::Impl& document);

} // namespace halvane::dom
