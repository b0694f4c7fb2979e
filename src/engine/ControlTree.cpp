// Walking the control document and making the output for its nodes.

#include "engine/ModExporter.h"

#include <utility>

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
    // A failure here is the child's own, although its parent's procedure catches it.
    const Node oParentNode = std::exchange(state.oActiveControlNode, child.DOMNode());
    if (child.targetsAttribute()) {
        oParentElement.setAttribute(child.TagName(), "");
        state.oActiveControlNode = oParentNode;
        return oParentElement;
    }
    const Node oElement = newOutputElement(state, child.TagName());
    if (!oElement)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "no element can be made: \"" + child.TagName() + "\" is not a name that XML allows");
    oParentElement.appendChild(oElement);
    state.oActiveControlNode = oParentNode;
    return oElement;
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

void completeItem(ExportState& state, Node oItemElement) {
    state.oOutputManager->DOMDoc()->markComplete(oItemElement);
}

void reportItem(ExportState& state, Node oRepeatedNode) {
    if (state.options.pObserver != nullptr && !state.options.pObserver->itemWritten(oRepeatedNode))
        throw ExportCancelled{};
}

} // namespace halvane
