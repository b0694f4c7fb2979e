// What nodes of the second edition write.

#include "engine/ModExporter.h"
#include "engine/TracedItem.h"
#include "engine/output/HeldElement.h"
#include "engine/second/RowScope.h"
#include "engine/second/SecondControl.h"
#include "exporters/second/ForEachItem.h"
#include "exporters/second/Fragment.h"
#include "exporters/second/SecondRows.h"
#include "exporters/second/geometry/GeometryContent.h"
#include "host/Rows.h"

#include <string>

namespace halvane {

namespace {

/// A child of the second edition on its way to the document.
struct SecondChild {
    ExportState& state;
    host::GisMapDocumentPtr& pMapDoc;
    const OutputElement& oParent;
    const ControlNode& control;
    const ControlNode* pParent;
    const GisRowPtr& pRow;
    const GisRowPtr& pRecord;
    Visit visit;

    [[nodiscard]] const SecondNode& second() const { return *control.pSecond; }
    [[nodiscard]] bool omitsEmpty() const { return second().omit == Omit::Empty; }
    [[nodiscard]] bool isRepeated() const {
        return second().rows || (control.bRepeated && visit != Visit::WalkOrdinary);
    }

    /// Writes what stands in the node, its output being made.
    void fill(const OutputElement& oOutput) const {
        if (control.bHasText && !control.hasChildren() && !isRepeated()) {
            writeOwnText(state, control, oOutput);
            return;
        }
        if (second().rows) {
            repeatSecondRows(state, pMapDoc, control, pParent, oOutput);
            return;
        }
        switch (visit) {
        case Visit::Walk:
            WalkControlNode(state, pMapDoc, oOutput, control, pParent, pRow, pRecord);
            break;
        case Visit::WalkOrdinary:
            WalkOrdinaryControlNode(state, pMapDoc, oOutput, control, pParent, pRow, pRecord);
            break;
        case Visit::RepeatRow:
            ExportMultiple(state, control, oOutput, pRow, pRecord, pParent);
            break;
        }
    }
};

/// Whether the node is a text and nothing else.
bool isText(const SecondChild& child) {
    return child.control.bHasText && !writesElements(child.control) && !child.control.hasChildren() &&
           !child.isRepeated();
}

void writeTextAttribute(const SecondChild& child) {
    const FieldText text = ownText(child.state, child.control);
    if (text.sText.empty() && child.omitsEmpty())
        return;
    checkContestedName(child.state, child.control, child.oParent);
    if (child.second().text && child.second().text->bConstant)
        child.oParent.setConstantAttribute(*child.control.pName, text.sText);
    else
        child.oParent.setAttribute(*child.control.pName, text.sText, text.kind);
    checkAttributeName(child.state, child.control, child.oParent);
}

void writeAttribute(const SecondChild& child) {
    if (isText(child)) {
        writeTextAttribute(child);
        return;
    }
    checkContestedName(child.state, child.control, child.oParent);
    HeldElement held(child.oParent);
    const OutputElement oTarget = child.omitsEmpty() ? held.output() : child.oParent;
    oTarget.setAttribute(*child.control.pName, "");
    child.fill(oTarget);
    if (!child.omitsEmpty() || held.isMade())
        checkAttributeName(child.state, child.control, child.oParent);
}

/// A text that is no XML tells the row that it is of.
void appendOwnText(ExportState& state, const ControlNode& control, const OutputElement& oElement,
                   const FieldText& text) {
    const SecondNode& second = *control.pSecond;
    try {
        appendTextAs(second, oElement, text.sText, text.kind, *state.oOutputManager->DOMDoc());
    } catch (const Failure& failure) {
        const bool bOfRow = state.pRowScope != nullptr && state.pRowScope->row() != nullptr;
        if (second.textAs != TextAs::Xml || !bOfRow)
            throw;
        throw failure.about("row " + std::to_string(state.pRowScope->row()->objectId()));
    }
}

void writeTextElement(const SecondChild& child) {
    const FieldText text = ownText(child.state, child.control);
    if (text.sText.empty() && child.omitsEmpty())
        return;
    if (child.second().declarations.empty() && child.second().textAs == TextAs::Text) {
        child.oParent.appendElement(*child.control.pName, text.sText, text.kind);
        return;
    }
    // A text that is XML may hold comments alone, or be none.
    if (child.omitsEmpty() && child.second().textAs == TextAs::Xml) {
        HeldElement held(child.oParent, *child.control.pName);
        declareNamespaces(child.control, held.output());
        appendOwnText(child.state, child.control, held.output(), text);
        return;
    }
    const OutputElement oElement = child.oParent.appendElement(*child.control.pName);
    declareNamespaces(child.control, oElement);
    appendOwnText(child.state, child.control, oElement, text);
}

void writeElement(const SecondChild& child) {
    if (isText(child)) {
        writeTextElement(child);
        return;
    }
    // A repeated node makes no element before its first item.
    if (child.omitsEmpty() || child.isRepeated()) {
        HeldElement held(child.oParent, *child.control.pName);
        declareNamespaces(child.control, held.output());
        child.fill(held.output());
        return;
    }
    const OutputElement oElement = child.oParent.appendElement(*child.control.pName);
    declareNamespaces(child.control, oElement);
    child.fill(oElement);
}

void writeIntoParent(const SecondChild& child) {
    if (!isText(child)) {
        child.fill(child.oParent.shared());
        return;
    }
    appendOwnText(child.state, child.control, child.oParent, ownText(child.state, child.control));
}

void writeOne(const SecondChild& child) {
    if (child.second().when && !child.second().when->holds(child.state)) {
        if (child.state.options.pTrace != nullptr)
            child.state.options.pTrace->conditionFails(child.state, child.control);
        return;
    }
    if (isDissolved(child.control))
        writeIntoParent(child);
    else if (child.control.pName == nullptr)
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + child.control.sTagName + "\" is not a name that XML allows");
    else if (child.control.bTargetsAttribute)
        writeAttribute(child);
    else
        writeElement(child);
}

void write(const SecondChild& child) {
    if (!child.second().forEach) {
        writeOne(child);
        return;
    }
    // Only the map is asked for here: the node's own source is bound for each item.
    const Binding& binding = *child.control.pBinding;
    if (binding.kind == DataSourceKind::Blank || !binding.bFrameBlank)
        BindControlNode(child.state, child.pMapDoc, child.control, child.pParent);
    forEachItem(child.state, *child.second().forEach, [&] {
        const TracedItem item(child.state, child.control);
        if (!item.isWanted())
            return;
        writeOne(child);
        reportItem(child.state, child.control);
    });
}

} // namespace

FieldText ownText(ExportState& state, const ControlNode& control) {
    if (control.pSecond->geometry)
        return geometryText(state, control);
    return valueOf(state, *control.pSecond->text, control);
}

FieldText valueOf(ExportState& state, const NodeText& text, const ControlNode& control) {
    const auto& pieces = text.pieces;
    const std::int32_t lDecimalPlaces = control.decimalPlaces.value();
    if (pieces.size() == 1 && pieces.front().sText.empty())
        return pieces.front().value->text(state, lDecimalPlaces);
    state.sTemplateText.clear();
    for (const auto& piece : pieces) {
        state.sTemplateText += piece.sText;
        if (piece.value)
            state.sTemplateText += piece.value->text(state, lDecimalPlaces).sText;
    }
    return {state.sTemplateText, TextKind::Any};
}

void writeOwnText(ExportState& state, const ControlNode& control, const OutputElement& oElement) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        if (writesElements(control)) {
            writeGeometryElements(state, control, oElement);
            return;
        }
        appendOwnText(state, control, oElement, ownText(state, control));
    });
}

void declareNamespaces(const ControlNode& control, const OutputElement& oElement) {
    if (control.pSecond == nullptr)
        return;
    for (const auto& declaration : control.pSecond->declarations)
        oElement.setDeclaration(*declaration.pName, declaration.sAddress);
    if (control.pSecond->bInline || control.pSecond->textAs == TextAs::Xml)
        oElement.setInline();
}

void ExportSecondChild(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const OutputElement& oParent,
                       const ControlNode& child, const ControlNode* pParent, const GisRowPtr& pRow,
                       const GisRowPtr& pRecord, Visit visit) {
    const ActiveNodeScope scope(state, child);
    trapFailures(state, [&] { write({state, pMapDoc, oParent, child, pParent, pRow, pRecord, visit}); });
}

} // namespace halvane
