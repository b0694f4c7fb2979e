#include "xml/dom/Characters.h"
#include "xml/dom/NodeListSources.h"
#include "xml/dom/TreeEditing.h"

namespace halvane::dom {

namespace {

std::optional<Kind> creatableKind(std::int32_t lType) noexcept {
    switch (static_cast<NodeType>(lType)) {
    case NodeType::Element:
    case NodeType::Attribute:
    case NodeType::Text:
    case NodeType::CDataSection:
    case NodeType::ProcessingInstruction:
    case NodeType::Comment:
    case NodeType::DocumentFragment:
        return static_cast<Kind>(lType);
    default:
        return std::nullopt;
    }
}

bool hasName(Kind kind) noexcept {
    return kind == Kind::Element || kind == Kind::Attribute || kind == Kind::ProcessingInstruction;
}

/// "xml" in any letter case is reserved; as written it is the XML declaration's.
bool isReservedTarget(std::string_view sName) noexcept {
    return sName != "xml" && sName.size() == 3 && (sName[0] == 'x' || sName[0] == 'X') &&
           (sName[1] == 'm' || sName[1] == 'M') && (sName[2] == 'l' || sName[2] == 'L');
}

} // namespace

Document::Document() : pImpl_(std::make_unique<Impl>(*this)) {}

Document::~Document() = default;

DocumentPtr Document::create() {
    struct Constructible : Document {};
    return std::make_shared<Constructible>();
}

Node Document::asNode() const {
    return Node(&pImpl_->documentNode);
}

Node Document::documentElement() const {
    NodeData* pChild = pImpl_->documentNode.pFirstChild;
    while (pChild != nullptr && pChild->kind != Kind::Element)
        pChild = pChild->pNext;
    return Node(pChild);
}

void Node::setInline() const {
    dataOf(*this).bInline = true;
}

void Document::setLayout(const Layout& layout) {
    pImpl_->layout = layout;
}

const Layout& Document::layout() const noexcept {
    return pImpl_->layout;
}

void Document::appendDocumentType(std::string_view sText) {
    NodeData& type = pImpl_->store.create(Kind::DocumentType, *pImpl_);
    pImpl_->store.setText(type, "<!DOCTYPE " + std::string(sText) + ">");
    link(pImpl_->documentNode, type, nullptr);
}

Node Document::createNode(std::int32_t lType, std::string_view sName, std::string_view /*sNamespace*/) {
    const auto kind = creatableKind(lType);
    if (!kind)
        throw Failure(FailureNumber::DocumentFailure,
                      "nodes of type " + std::to_string(lType) + " cannot be created");
    const Name* const pName = hasName(*kind) ? pImpl_->names.intern(sName) : nullptr;
    if (*kind == Kind::ProcessingInstruction && isReservedTarget(sName))
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + std::string(sName) + "\" is reserved for the XML declaration");
    NodeData& node = pImpl_->store.create(*kind, *pImpl_);
    node.pName = pName;
    return Node(&node);
}

const Name* Document::findName(std::string_view sName) {
    return isXmlName(sName) ? pImpl_->names.intern(sName) : nullptr;
}

Node Document::createElement(const Name& name) {
    NodeData& element = pImpl_->store.create(Kind::Element, *pImpl_);
    element.pName = &name;
    return Node(&element);
}

NodeList Document::getElementsByTagName(std::string_view sName) const {
    return listOfDescendants(pImpl_->documentNode, sName);
}

void Document::setSpoolFolder(std::string sFolder) {
    pImpl_->sealing.setFolder(std::move(sFolder));
}

void Document::markComplete(Node item) {
    NodeData& data = dataOf(item);
    if (data.kind != Kind::Element || data.pParent == nullptr || data.pDocument != pImpl_.get())
        throw Failure::of(FailureNumber::InvalidProcedureCall);
    pImpl_->sealing.markComplete(data);
}

void Document::release(Node detached) {
    NodeData& data = dataOf(detached);
    if (data.kind == Kind::Document || data.pParent != nullptr || data.pDocument != pImpl_.get())
        throw Failure::of(FailureNumber::InvalidProcedureCall);
    pImpl_->changed();
    destroyTree(data);
}

const CharacterRepairs& Document::characterRepairs() const noexcept {
    const CharacterRepairs& sealed = pImpl_->sealing.repairs();
    pImpl_->repairs = {sealed.dropped + pImpl_->repairsOfLastSave.dropped,
                       sealed.replaced + pImpl_->repairsOfLastSave.replaced};
    return pImpl_->repairs;
}

const std::string& Document::whyNotDurable() const noexcept {
    return pImpl_->sWhyNotDurable;
}

MemoryUse Document::memoryUse() const noexcept {
    return {pImpl_->store.liveNodes(), pImpl_->store.liveTextBytes(), pImpl_->store.reservedBytes(),
            pImpl_->sealing.spooledBytes()};
}

} // namespace halvane::dom
