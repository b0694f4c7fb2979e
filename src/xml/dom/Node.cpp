// Reading nodes.

#include "xml/dom/TreeEditing.h"

namespace halvane::dom {

namespace {

bool hasOwnText(const NodeData& node) noexcept {
    switch (node.kind) {
    case Kind::Attribute:
    case Kind::Text:
    case Kind::CData:
    case Kind::ProcessingInstruction:
    case Kind::Comment:
        return true;
    default:
        return false;
    }
}

/// Their parent is their element, which the published interface does not call a parent.
bool isAttribute(const NodeData& node) noexcept {
    return node.kind == Kind::Attribute;
}

} // namespace

NodeType Node::nodeType() const {
    return static_cast<NodeType>(dataOf(*this).kind);
}

std::string_view Node::nodeName() const {
    const NodeData& node = dataOf(*this);
    switch (node.kind) {
    case Kind::Document:
        return "#document";
    case Kind::Fragment:
        return "#document-fragment";
    case Kind::Text:
        return "#text";
    case Kind::CData:
        return "#cdata-section";
    case Kind::Comment:
        return "#comment";
    default:
        return node.pName->sQualified;
    }
}

std::string_view Node::baseName() const {
    const NodeData& node = dataOf(*this);
    return node.pName == nullptr ? std::string_view() : node.pName->base();
}

std::string_view Node::nodeValue() const {
    const NodeData& node = dataOf(*this);
    return hasOwnText(node) ? node.text() : std::string_view();
}

Node Node::parentNode() const {
    const NodeData& node = dataOf(*this);
    return Node(isAttribute(node) ? nullptr : node.pParent);
}

bool Node::hasChildNodes() const {
    return static_cast<bool>(firstChild());
}

Node Node::firstChild() const {
    return Node(skipPlaceholders(dataOf(*this).pFirstChild));
}

Node Node::lastChild() const {
    return Node(skipPlaceholdersBackwards(dataOf(*this).pLastChild));
}

Node Node::nextSibling() const {
    const NodeData& node = dataOf(*this);
    return Node(isAttribute(node) ? nullptr : skipPlaceholders(node.pNext));
}

Node Node::previousSibling() const {
    const NodeData& node = dataOf(*this);
    return Node(isAttribute(node) ? nullptr : skipPlaceholdersBackwards(node.pPrevious));
}

NamedNodeMap Node::attributes() const {
    NodeData& node = dataOf(*this);
    return NamedNodeMap(node.kind == Kind::Element ? &node : nullptr);
}

std::optional<std::string_view> Node::getAttribute(std::string_view sName) const {
    const NodeData* const pAttribute = findAttribute(dataOf(*this), sName);
    return pAttribute == nullptr ? std::nullopt : std::optional(pAttribute->text());
}

std::string Node::text() const {
    NodeData& top = dataOf(*this);
    if (hasOwnText(top))
        return std::string(top.text());
    std::string sText;
    for (NodeData* pNode = &top; pNode != nullptr; pNode = following(pNode, &top))
        if (pNode->kind == Kind::Text || pNode->kind == Kind::CData)
            sText.append(pNode->text());
    return sText;
}

Document& Node::ownerDocument() const {
    return *dataOf(*this).pDocument->pDocument;
}

std::uint32_t Node::line() const {
    return dataOf(*this).nLine;
}

std::int32_t NamedNodeMap::length() const {
    if (pElement_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    std::int32_t lLength = 0;
    for (const NodeData* pAttribute = pElement_->pFirstAttribute; pAttribute != nullptr;
         pAttribute = pAttribute->pNext)
        ++lLength;
    return lLength;
}

Node NamedNodeMap::item(std::int32_t lIndex) const {
    if (pElement_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    NodeData* pAttribute = lIndex < 0 ? nullptr : pElement_->pFirstAttribute;
    for (; pAttribute != nullptr && lIndex > 0; --lIndex)
        pAttribute = pAttribute->pNext;
    return Node(pAttribute);
}

Node NamedNodeMap::getNamedItem(std::string_view sName) const {
    if (pElement_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return Node(findAttribute(*pElement_, sName));
}

NamedNodeMap::Iterator& NamedNodeMap::Iterator::operator++() {
    pAttribute_ = pAttribute_->pNext;
    return *this;
}

NamedNodeMap::Iterator NamedNodeMap::begin() const {
    return Iterator(pElement_ == nullptr ? nullptr : pElement_->pFirstAttribute);
}

NodeObject::NodeObject(Node node) : pDocument_(node.ownerDocument().shared_from_this()), node_(node) {
    auto& holders = pDocument_->impl().holders;
    place_ = holders.insert(holders.end(), this);
}

NodeObject::~NodeObject() {
    pDocument_->impl().holders.erase(place_);
}

void NodeObject::follow(Document::Impl& from, Document::Impl& to) noexcept {
    for (auto it = from.holders.begin(); it != from.holders.end();) {
        NodeObject& object = **it++;
        if (object.node_.data()->pDocument != &to)
            continue;
        to.holders.splice(to.holders.end(), from.holders, object.place_);
        object.pDocument_ = to.pDocument->shared_from_this();
    }
}

} // namespace halvane::dom
