#include "xml/dom/TreeBuilder.h"

#include "xml/dom/TreeEditing.h"

namespace halvane::dom {

NodeData& TreeBuilder::append(Kind kind, std::uint32_t nLine) {
    NodeData& node = document_.store.create(kind, document_);
    node.nLine = nLine;
    link(*pCurrent_, node, nullptr);
    return node;
}

NodeData& TreeBuilder::startElement(const Name& name, std::uint32_t nLine) {
    NodeData& element = append(Kind::Element, nLine);
    element.pName = &name;
    pCurrent_ = &element;
    return element;
}

NodeData& TreeBuilder::attribute(const Name& name, std::string_view sValue) {
    NodeData& attribute = addAttribute(*pCurrent_, &name, sValue);
    attribute.nLine = pCurrent_->nLine;
    return attribute;
}

NodeData& TreeBuilder::characters(Kind kind, std::string_view sText, std::uint32_t nLine) {
    NodeData& node = append(kind, nLine);
    document_.store.setText(node, sText);
    return node;
}

NodeData& TreeBuilder::instruction(std::string_view sTarget, std::string_view sData, std::uint32_t nLine) {
    const Name* const pName = document_.names.intern(sTarget);
    NodeData& node = characters(Kind::ProcessingInstruction, sData, nLine);
    node.pName = pName;
    return node;
}

NodeData& TreeBuilder::declaration(std::string_view sData) {
    NodeData& node = instruction("xml", sData, 1);
    NodeData* const pFirst = document_.documentNode.pFirstChild;
    if (pFirst != &node) {
        unlink(node);
        link(document_.documentNode, node, pFirst);
    }
    return node;
}

NodeData& TreeBuilder::documentType(std::string_view sName, std::string_view sText) {
    const Name* const pName = document_.names.intern(sName);
    NodeData& node = characters(Kind::DocumentType, sText, 0);
    node.pName = pName;
    return node;
}

void TreeBuilder::discard() noexcept {
    pCurrent_ = &document_.documentNode;
    while (document_.documentNode.pFirstChild != nullptr) {
        NodeData& child = *document_.documentNode.pFirstChild;
        unlink(child);
        destroyTree(child);
    }
}

} // namespace halvane::dom
