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
    const OutputElement oElement = oParent.appendElement(*control.pName);
    declareNamespaces(control, oElement);
    return oElement;
}

namespace {

void setOwnAttribute(const ControlNode& control, const OutputElement& oOutput, std::string_view sValue,
                     TextKind kind) {
    if (control.pName == nullptr)
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + control.sTagName + "\" is not a name that XML allows");
    oOutput.setAttribute(*control.pName, sValue, kind);
}

} // namespace

OutputElement makeUnusualOutput(ExportState& state, const ControlNode& child, const OutputElement& oParent) {
    // A failure here is the child's own, although its parent's procedure catches it.
    const Node oParentNode = std::exchange(state.oActiveControlNode, child.oNode);
    OutputElement oOutput = oParent;
    if (child.bTargetsAttribute)
        setOwnAttribute(child, oParent, "", TextKind::Plain);
    else if (child.pName != nullptr)
        oOutput = appendNamed(child, oParent);
    else
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "no element can be made: \"" + child.sTagName + "\" is not a name that XML allows");
    state.oActiveControlNode = oParentNode;
    return oOutput;
}

void writeChildValue(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                     std::string_view sValue, TextKind kind) {
    if (control.bTargetsAttribute) {
        setOwnAttribute(control, oOutput, sValue, kind);
        checkAttributeName(state, control, oOutput);
    } else if (control.pSecond != nullptr) {
        appendNamed(control, oOutput).setText(sValue, kind);
    } else if (control.pName != nullptr) {
        oOutput.appendElement(*control.pName, sValue, kind);
    } else {
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    }
}

void completeItem(ExportState& state, Node oItemElement) {
    if (state.options.pTrace == nullptr)
        state.oOutputManager->DOMDoc()->markComplete(oItemElement);
}

void reportItem(ExportState& state, const ControlNode& repeated) {
    if (state.options.pObserver != nullptr && !state.options.pObserver->itemWritten(repeated.oNode))
        throw ExportCancelled{};
}

} // namespace halvane
