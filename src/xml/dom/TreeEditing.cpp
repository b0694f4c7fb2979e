#include "xml/dom/TreeEditing.h"

#include <algorithm>
#include <new>
#include <vector>

namespace halvane::dom {

namespace {

void childrenChanged(NodeData& parent) noexcept {
    ++parent.nChildrenVersion;
    parent.pDocument->changed();
}

/// Calls `fn` for the node and its attributes.
template<class Function>
void forNodeAndAttributes(NodeData& node, Function&& fn) {
    fn(node);
    for (NodeData* pAttribute = node.pFirstAttribute; pAttribute != nullptr; pAttribute = pAttribute->pNext)
        fn(*pAttribute);
}

void destroyWithAttributes(NodeData& node) noexcept {
    Document::Impl& document = *node.pDocument;
    for (NodeData* pAttribute = node.pFirstAttribute; pAttribute != nullptr;) {
        NodeData& attribute = *pAttribute;
        pAttribute = attribute.pNext;
        document.store.destroy(attribute);
    }
    document.sealing.forget(node);
    document.wideElements.forget(node);
    document.store.destroy(node);
}

NodeData& copyNode(const NodeData& node) {
    Document::Impl& document = *node.pDocument;
    NodeData& copy = document.store.create(node.kind, document);
    copy.pName = node.pName;
    copy.bBreak = node.bBreak;
    document.store.setText(copy, node.text());
    if (node.kind == Kind::Placeholder)
        document.sealing.copyPlaceholder(node, copy);
    for (const NodeData* pAttribute = node.pFirstAttribute; pAttribute != nullptr;
         pAttribute = pAttribute->pNext)
        addAttribute(copy, pAttribute->pName, pAttribute->text());
    return copy;
}

/// @param pFirst the first attribute that has not been looked at.
NodeData* findAmongMany(const NodeData& element, std::string_view sName, NodeData* pFirst) noexcept {
    try {
        return element.pDocument->wideElements.find(element, sName);
    } catch (const std::bad_alloc&) {
        // Slower, but right.
        while (pFirst != nullptr && pFirst->pName->sQualified != sName)
            pFirst = pFirst->pNext;
        return pFirst;
    }
}

} // namespace

void link(NodeData& parent, NodeData& child, NodeData* pBefore) noexcept {
    NodeData* const pAfter = pBefore == nullptr ? parent.pLastChild : pBefore->pPrevious;
    child.pParent = &parent;
    child.pPrevious = pAfter;
    child.pNext = pBefore;
    (pAfter == nullptr ? parent.pFirstChild : pAfter->pNext) = &child;
    (pBefore == nullptr ? parent.pLastChild : pBefore->pPrevious) = &child;
    childrenChanged(parent);
}

void unlink(NodeData& node) noexcept {
    if (node.pParent == nullptr)
        return;
    NodeData& parent = *node.pParent;
    (node.pPrevious == nullptr ? parent.pFirstChild : node.pPrevious->pNext) = node.pNext;
    (node.pNext == nullptr ? parent.pLastChild : node.pNext->pPrevious) = node.pPrevious;
    node.pParent = node.pPrevious = node.pNext = nullptr;
    node.bBreakBefore = false;
    childrenChanged(parent);
}

NodeData& addAttribute(NodeData& element, const Name* pName, std::string_view sValue) {
    NodeStore& store = element.pDocument->store;
    NodeData& attribute = store.create(Kind::Attribute, *element.pDocument);
    try {
        store.setText(attribute, sValue);
    } catch (...) {
        store.destroy(attribute);
        throw;
    }
    attribute.pName = pName;
    attribute.pParent = &element;
    attribute.pPrevious = element.pLastAttribute;
    (element.pLastAttribute == nullptr ? element.pFirstAttribute : element.pLastAttribute->pNext) =
        &attribute;
    element.pLastAttribute = &attribute;
    return attribute;
}

NodeData* findAttribute(const NodeData& element, std::string_view sName) noexcept {
    NodeData* pAttribute = element.pFirstAttribute;
    for (std::size_t n = 0; pAttribute != nullptr; pAttribute = pAttribute->pNext) {
        if (pAttribute->pName->sQualified == sName)
            return pAttribute;
        if (++n == WideElements::fewAttributes)
            return findAmongMany(element, sName, pAttribute->pNext);
    }
    return nullptr;
}

void destroyTree(NodeData& top) noexcept {
    NodeData* pNode = &top;
    for (;;) {
        while (pNode->pFirstChild != nullptr)
            pNode = pNode->pFirstChild;
        NodeData* const pNext = pNode->pNext;
        NodeData* const pParent = pNode->pParent;
        const bool bTop = pNode == &top;
        destroyWithAttributes(*pNode);
        if (bTop)
            return;
        pParent->pFirstChild = pNext;
        pNode = pNext != nullptr ? pNext : pParent;
    }
}

NodeData& cloneTree(const NodeData& top, bool bDeep) {
    NodeData& copyOfTop = copyNode(top);
    if (!bDeep || top.pFirstChild == nullptr)
        return copyOfTop;
    try {
        const NodeData* pNode = &top;
        NodeData* pCopy = &copyOfTop;
        for (;;) {
            if (pNode->pFirstChild != nullptr) {
                pNode = pNode->pFirstChild;
            } else {
                while (pNode != &top && pNode->pNext == nullptr) {
                    pNode = pNode->pParent;
                    pCopy = pCopy->pParent;
                }
                if (pNode == &top)
                    return copyOfTop;
                pNode = pNode->pNext;
                pCopy = pCopy->pParent;
            }
            NodeData& next = copyNode(*pNode);
            link(*pCopy, next, nullptr);
            pCopy = &next;
        }
    } catch (...) {
        destroyTree(copyOfTop);
        throw;
    }
}

void adopt(NodeData& top, Document::Impl& document) {
    Document::Impl& origin = *top.pDocument;
    // First everything that can fail, beside what is there.
    std::vector<const Name*> aNames;
    try {
        for (NodeData* pNode = &top; pNode != nullptr; pNode = following(pNode, &top)) {
            forNodeAndAttributes(*pNode, [&](const NodeData& node) {
                if (node.pName != nullptr)
                    aNames.push_back(document.names.intern(node.pName->sQualified));
            });
            if (pNode->kind == Kind::Placeholder)
                document.sealing.copyFrom(origin.sealing, *pNode);
        }
        document.store.keepArenasOf(origin.store);
    } catch (...) {
        for (NodeData* pNode = &top; pNode != nullptr; pNode = following(pNode, &top))
            if (pNode->kind == Kind::Placeholder)
                document.sealing.forget(*pNode);
        throw;
    }
    auto pName = aNames.cbegin();
    for (NodeData* pNode = &top; pNode != nullptr; pNode = following(pNode, &top)) {
        origin.sealing.forget(*pNode);
        origin.wideElements.forget(*pNode);
        forNodeAndAttributes(*pNode, [&](NodeData& node) {
            node.pDocument = &document;
            if (node.pName != nullptr)
                node.pName = *pName++;
            document.store.countOver(origin.store, node);
        });
    }
    NodeObject::follow(origin, document);
    // Live lists over the tree go by it: it must not come to a number that they have seen.
    document.nVersion = std::max(document.nVersion, origin.nVersion);
    origin.changed();
}

} // namespace halvane::dom
