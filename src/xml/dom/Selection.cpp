// Lists and selections that start from a node.

#include "xml/dom/NodeListSources.h"

namespace halvane::dom {

namespace {

std::vector<Node> select(NodeData& context, std::string_view sXPath) {
    Document::Impl& document = *context.pDocument;
    NodeData* const pTop = topOf(&context);
    if (document.pMirror == nullptr || document.pMirrorTop != pTop) {
        document.pMirror = makeMirror(*pTop);
        document.pMirrorTop = pTop;
    }
    return document.pMirror->select(context, sXPath);
}

} // namespace

NodeList Node::childNodes() const {
    return listOfChildren(dataOf(*this));
}

NodeList Node::selectNodes(std::string_view sXPath) const {
    return listOf(select(dataOf(*this), sXPath));
}

Node Node::selectSingleNode(std::string_view sXPath) const {
    const auto aNodes = select(dataOf(*this), sXPath);
    return aNodes.empty() ? Node() : aNodes.front();
}

NodeList Node::getElementsByTagName(std::string_view sName) const {
    return listOfDescendants(dataOf(*this), sName);
}

} // namespace halvane::dom
