// Walking the control document and making the output for its nodes.

#include "engine/ModExporter.h"

namespace halvane {

namespace {

Node skipIgnored(const ExportState& state, Node oNode) {
    while (oNode && state.options.bIgnoreComments &&
           (oNode.nodeType() == dom::NodeType::Comment ||
            oNode.nodeType() == dom::NodeType::ProcessingInstruction))
        oNode = oNode.nextSibling();
    return oNode;
}

} // namespace

Node firstControlChild(const ExportState& state, Node oControlNode) {
    return skipIgnored(state, oControlNode.firstChild());
}

Node nextControlSibling(const ExportState& state, Node oControlNode) {
    return skipIgnored(state, oControlNode.nextSibling());
}

Node newOutputElement(ExportState& state, std::string_view sName) {
    return state.oOutputManager->CreateNode(sName, nullptr,
                                            static_cast<std::int32_t>(dom::NodeType::Element));
}

Node makeChildOutput(ExportState& state, const ClsXMLNode& child, Node oParentElement) {
    if (child.targetsAttribute()) {
        oParentElement.setAttribute(child.TagName(), "");
        return oParentElement;
    }
    return oParentElement.appendChild(newOutputElement(state, child.TagName()));
}

void writeChildValue(ExportState& state, const ClsXMLNode& node, Node oOutputElement,
                     std::string_view sValue) {
    if (node.targetsAttribute()) {
        oOutputElement.setAttribute(node.TagName(), sValue);
        return;
    }
    Node oElement = newOutputElement(state, node.TagName());
    oElement.setText(sValue);
    oOutputElement.appendChild(oElement);
}

void completeItem(ExportState& state, const ClsXMLNode& repeatedNode, Node oItemElement) {
    if (!repeatedNode.targetsAttribute())
        state.oOutputManager->DOMDoc()->markComplete(oItemElement);
}

void reportItem(ExportState& state, Node oRepeatedNode) {
    if (state.options.pObserver != nullptr && !state.options.pObserver->itemWritten(oRepeatedNode))
        throw ExportCancelled{};
}

} // namespace halvane
