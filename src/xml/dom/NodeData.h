#pragma once

// One node as it lies in the arena. Nothing outside the document tree reads it.

#include "xml/dom/Dom.h"
#include "xml/dom/NameTable.h"

#include <cstdint>
#include <string_view>

namespace halvane::dom {

/// The kinds of nodes in the arena: the published types under their numbers, and one of our own.
enum class Kind : std::uint8_t {
    Element = 1,
    Attribute = 2,
    Text = 3,
    CData = 4,
    ProcessingInstruction = 7,
    Comment = 8,
    Document = 9,
    DocumentType = 10,
    Fragment = 11,
    /// Stands for sealed siblings; no public operation shows it.
    Placeholder = 100,
};

struct NodeData {
    Document::Impl* pDocument = nullptr;
    NodeData* pParent = nullptr; ///< of an attribute: its element
    NodeData* pPrevious = nullptr;
    NodeData* pNext = nullptr;
    NodeData* pFirstChild = nullptr;
    NodeData* pLastChild = nullptr;
    NodeData* pFirstAttribute = nullptr;
    NodeData* pLastAttribute = nullptr;
    const Name* pName = nullptr; ///< of elements, attributes, processing instructions, document types
    char* pText = nullptr;
    void* pMirror = nullptr; ///< the node's image in its document's mirror, valid while there is one
    std::uint32_t nTextSize = 0;
    std::uint32_t nLine = 0;
    std::uint32_t nChildrenVersion = 0; ///< counts the changes of the child list
    Kind kind = Kind::Element;
    bool bBreak = false;       ///< a text that is a line break between tags: written as it is
    bool bBreakBefore = false; ///< a child of the document that is written after a line break
    bool bComplete = false;    ///< marked as complete and not sealed yet
    bool bInline = false;      ///< an element without breaks between the tags in it

    [[nodiscard]] std::string_view text() const noexcept { return {pText, nTextSize}; }
};

/// @throws Failure ObjectVariableNotSet for a handle on nothing.
[[nodiscard]] inline NodeData& dataOf(const Node& node) {
    if (!node)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return *node.data();
}

[[nodiscard]] inline bool isText(const NodeData& node) noexcept {
    return node.kind == Kind::Text;
}

/// Whether the kind is written between "<" and ">".
[[nodiscard]] inline bool isMarkup(const NodeData& node) noexcept {
    return node.kind != Kind::Text;
}

[[nodiscard]] inline NodeData* skipPlaceholders(NodeData* pNode) noexcept {
    while (pNode != nullptr && pNode->kind == Kind::Placeholder)
        pNode = pNode->pNext;
    return pNode;
}

[[nodiscard]] inline NodeData* skipPlaceholdersBackwards(NodeData* pNode) noexcept {
    while (pNode != nullptr && pNode->kind == Kind::Placeholder)
        pNode = pNode->pPrevious;
    return pNode;
}

/// The node after `pNode` in document order inside the tree of `pTop` (attributes left out), placeholders
/// included; nothing after the last.
[[nodiscard]] inline NodeData* following(NodeData* pNode, const NodeData* pTop) noexcept {
    if (pNode->pFirstChild != nullptr)
        return pNode->pFirstChild;
    while (pNode != pTop && pNode->pNext == nullptr)
        pNode = pNode->pParent;
    return pNode == pTop ? nullptr : pNode->pNext;
}

/// The topmost node of the tree that the node is in.
[[nodiscard]] inline NodeData* topOf(NodeData* pNode) noexcept {
    while (pNode->pParent != nullptr)
        pNode = pNode->pParent;
    return pNode;
}

} // namespace halvane::dom
