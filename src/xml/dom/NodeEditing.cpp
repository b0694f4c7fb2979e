// Changing nodes: what may stand where.

#include "xml/dom/TreeEditing.h"

#include <string>

namespace halvane::dom {

namespace {

[[noreturn]] void refuse(std::string sReason) {
    throw Failure(FailureNumber::DocumentFailure, std::move(sReason));
}

bool isDeclaration(const NodeData& node) noexcept {
    return node.kind == Kind::ProcessingInstruction && node.pName->sQualified == "xml";
}

bool hasChildOfKind(const NodeData& parent, Kind kind, const NodeData& except) noexcept {
    for (const NodeData* pChild = parent.pFirstChild; pChild != nullptr; pChild = pChild->pNext)
        if (pChild != &except && pChild->kind == kind)
            return true;
    return false;
}

/// Below elements and fragments.
bool isContent(const NodeData& child) noexcept {
    switch (child.kind) {
    case Kind::Element:
    case Kind::Text:
    case Kind::CData:
    case Kind::Comment:
        return true;
    case Kind::ProcessingInstruction:
        return !isDeclaration(child);
    default:
        return false;
    }
}

void requireDocumentChild(const NodeData& document, const NodeData& child, const NodeData* pBefore) {
    const bool bFits = child.kind == Kind::Element || child.kind == Kind::Comment ||
                       child.kind == Kind::ProcessingInstruction;
    if (!bFits)
        refuse("a document cannot have this kind of child");
    if (child.kind == Kind::Element && hasChildOfKind(document, Kind::Element, child))
        refuse("a document has only one root element");
    const NodeData* const pOther = document.pFirstChild == &child ? child.pNext : document.pFirstChild;
    if (isDeclaration(child) && pOther != nullptr && pBefore != pOther && pBefore != &child)
        refuse("the XML declaration stands before everything else");
    if (pBefore != nullptr && pBefore != &child && isDeclaration(*pBefore))
        refuse("nothing stands before the XML declaration");
}

void requireFittingChild(const NodeData& parent, const NodeData& child, const NodeData* pBefore) {
    switch (parent.kind) {
    case Kind::Document:
        requireDocumentChild(parent, child, pBefore);
        break;
    case Kind::Element:
    case Kind::Fragment:
        if (!isContent(child))
            refuse("an element cannot have this kind of child");
        break;
    default:
        refuse("this kind of node has no children");
    }
    if (child.pFirstChild == nullptr && &parent != &child)
        return;
    for (const NodeData* pAncestor = &parent; pAncestor != nullptr; pAncestor = pAncestor->pParent)
        if (pAncestor == &child)
            refuse("a node cannot become its own descendant");
}

/// Moves a tree into another document. What fails leaves it as it is.
/// @returns the document that it comes from: what held that may have gone with the tree.
DocumentPtr adoptInto(NodeData& top, const NodeData& parent) {
    if (top.pDocument == parent.pDocument)
        return nullptr;
    DocumentPtr pFrom = top.pDocument->pDocument->shared_from_this();
    adopt(top, *parent.pDocument);
    return pFrom;
}

void place(NodeData& parent, NodeData& child, NodeData* pBefore) {
    requireFittingChild(parent, child, pBefore);
    if (pBefore == &child)
        return;
    const DocumentPtr pFrom = adoptInto(child, parent);
    unlink(child);
    link(parent, child, pBefore);
}

/// A fragment stays behind, empty.
void placeChildrenOf(NodeData& fragment, NodeData& parent, NodeData* pBefore) {
    std::size_t nElements = 0;
    for (NodeData* pChild = fragment.pFirstChild; pChild != nullptr; pChild = pChild->pNext) {
        if (pChild->kind != Kind::Placeholder)
            requireFittingChild(parent, *pChild, pBefore);
        else if (parent.kind == Kind::Document)
            refuse("a document has only one root element");
        nElements += pChild->kind == Kind::Element ? 1U : 0U;
    }
    if (parent.kind == Kind::Document && nElements > 1)
        refuse("a document has only one root element");
    const DocumentPtr pFrom = adoptInto(fragment, parent);
    while (fragment.pFirstChild != nullptr) {
        NodeData& child = *fragment.pFirstChild;
        unlink(child);
        link(parent, child, pBefore);
    }
}

Node placed(const Node& parent, const Node& child, NodeData* pBefore) {
    NodeData& parentData = dataOf(parent);
    NodeData& childData = dataOf(child);
    if (&childData == &parentData)
        refuse("a node cannot hold itself");
    if (childData.kind == Kind::Fragment)
        placeChildrenOf(childData, parentData, pBefore);
    else
        place(parentData, childData, pBefore);
    return child;
}

void removeChildren(NodeData& parent) noexcept {
    while (parent.pFirstChild != nullptr) {
        NodeData& child = *parent.pFirstChild;
        unlink(child);
        if (child.kind == Kind::Placeholder)
            destroyTree(child);
    }
}

void setChildText(NodeData& parent, std::string_view sText) {
    NodeStore& store = parent.pDocument->store;
    NodeData* const pOnly = parent.pFirstChild;
    // A lone text is written over, so that a text set again and again takes no memory.
    if (pOnly != nullptr && pOnly == parent.pLastChild && isText(*pOnly) && !sText.empty()) {
        store.setText(*pOnly, sText);
        pOnly->bBreak = false;
        parent.pDocument->changed();
        return;
    }
    NodeData* pText = nullptr;
    if (!sText.empty()) {
        pText = &store.create(Kind::Text, *parent.pDocument);
        store.setText(*pText, sText);
    }
    removeChildren(parent);
    if (pText != nullptr)
        link(parent, *pText, nullptr);
}

} // namespace

// NOLINTBEGIN(readability-make-member-function-const): a const handle does not change its node

void Node::setAttribute(std::string_view sName, std::string_view sValue) {
    NodeData& element = dataOf(*this);
    if (element.kind != Kind::Element)
        throw Failure::of(FailureNumber::PropertyOrMethodNotSupported);
    if (NodeData* const pAttribute = findAttribute(element, sName))
        element.pDocument->store.setText(*pAttribute, sValue);
    else
        addAttribute(element, element.pDocument->names.intern(sName), sValue);
    element.pDocument->changed();
}

void Node::setText(std::string_view sText) {
    NodeData& node = dataOf(*this);
    switch (node.kind) {
    case Kind::Element:
    case Kind::Fragment:
        setChildText(node, sText);
        break;
    case Kind::Document:
    case Kind::DocumentType:
    case Kind::Placeholder:
        throw Failure::of(FailureNumber::PropertyOrMethodNotSupported);
    default:
        node.pDocument->store.setText(node, sText);
        node.bBreak = false;
        node.pDocument->changed();
    }
}

Node Node::appendChild(Node child) {
    return placed(*this, child, nullptr);
}

Node Node::insertBefore(Node child, Node reference) {
    if (reference &&
        (reference.data()->pParent != &dataOf(*this) || reference.data()->kind == Kind::Attribute))
        refuse("the node to insert before is not a child of this node");
    return placed(*this, child, reference.data());
}

Node Node::removeChild(Node child) {
    NodeData& node = dataOf(child);
    if (node.pParent != &dataOf(*this) || node.kind == Kind::Attribute)
        refuse("the node to remove is not a child of this node");
    unlink(node);
    return child;
}

// NOLINTEND(readability-make-member-function-const)

Node Node::cloneNode(bool bDeep) const {
    const NodeData& node = dataOf(*this);
    if (node.kind == Kind::Document || node.kind == Kind::DocumentType)
        throw Failure::of(FailureNumber::PropertyOrMethodNotSupported);
    return Node(&cloneTree(node, bDeep));
}

} // namespace halvane::dom
