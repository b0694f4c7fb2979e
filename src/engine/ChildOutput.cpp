// Making the output for control nodes.

#include "engine/ModExporter.h"

#include <utility>

namespace halvane {

Node newOutputElement(ExportState& state, std::string_view sName) {
    return state.oOutputManager->CreateNode(sName, nullptr,
                                            static_cast<std::int32_t>(dom::NodeType::Element));
}

OutputElement appendNamed(const ControlNode& control, const OutputElement& oParent) {
    if (control.pName == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return oParent.appendElement(*control.pName);
}

namespace {

void setOwnAttribute(const ControlNode& control, const OutputElement& oOutput, std::string_view sValue) {
    if (control.pName == nullptr)
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + control.sTagName + "\" is not a name that XML allows");
    oOutput.setAttribute(*control.pName, sValue);
}

} // namespace

OutputElement makeChildOutput(ExportState& state, const ControlNode& child, const OutputElement& oParent) {
    // A failure here is the child's own, although its parent's procedure catches it.
    const Node oParentNode = std::exchange(state.oActiveControlNode, child.oNode);
    OutputElement oChild = oParent;
    if (child.bTargetsAttribute)
        setOwnAttribute(child, oParent, "");
    else if (child.pName != nullptr)
        oChild = oParent.appendElement(*child.pName);
    else
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "no element can be made: \"" + child.sTagName + "\" is not a name that XML allows");
    state.oActiveControlNode = oParentNode;
    return oChild;
}

void writeChildValue(const ControlNode& control, const OutputElement& oOutput, std::string_view sValue) {
    if (control.bTargetsAttribute)
        setOwnAttribute(control, oOutput, sValue);
    else
        appendNamed(control, oOutput).setText(sValue);
}

void completeItem(ExportState& state, Node oItemElement) {
    state.oOutputManager->DOMDoc()->markComplete(oItemElement);
}

void reportItem(ExportState& state, const ControlNode& repeated) {
    if (state.options.pObserver != nullptr && !state.options.pObserver->itemWritten(repeated.oNode))
        throw ExportCancelled{};
}

} // namespace halvane
