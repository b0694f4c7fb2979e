// Repeats a control node over the items of its data source.

#include "engine/TracedItem.h"
#include "engine/output/ItemCounter.h"
#include "engine/second/RowScope.h"
#include "engine/second/SecondNode.h"
#include "engine/sources/Binding.h"
#include "exporters/ItemCopies.h"
#include "exporters/KindExports.h"
#include "exporters/RelatedRows.h"
#include "exporters/RepeatedNode.h"
#include "exporters/ShapeUse.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Tables.h"

#include <string>

namespace halvane {

namespace {

/// The items of a repeated node: their elements, their number and those who hear of them.
class Items {
public:
    explicit Items(const RepeatedNode& repeated)
        : repeated_(repeated),
          copies_(repeated.state, repeated.control, repeated.oOutput, repeated.control.pName),
          counter_(repeated.state.options.lItemLimit) {}

    /// The element of the next item.
    const OutputElement& next() {
        if (counter_.value() > 0)
            return copies_.next();
        const bool bInsideItem = repeated_.pRow != nullptr || repeated_.pRecord != nullptr;
        return bInsideItem ? copies_.firstInItem() : copies_.first();
    }

    /// The item is written.
    void written() {
        reportItem(repeated_.state, repeated_.control);
        counter_.increment();
    }

private:
    const RepeatedNode& repeated_;
    ItemCopies copies_;
    ItemCounter counter_;
};

host::GisCursorPtr searchCurrentTable(ExportState& state) {
    return state.pTable == nullptr ? nullptr : state.pTable->search(nullptr);
}

/// Writes one value a row; the rows of a table are handed on as records too.
void exportLeafRows(const RepeatedNode& repeated, const host::GisCursorPtr& pCursor, bool bRowsAreRecords) {
    if (pCursor == nullptr)
        return;
    Items items(repeated);
    const ExportState& state = repeated.state;
    RowScope scope(repeated.state, bRowsAreRecords ? state.pTable : state.pFeatureClass);
    while (const GisRowPtr pRow = pCursor->nextRow()) {
        scope.turnTo(*pRow);
        const TracedItem item(repeated.state, repeated.control);
        if (!item.isWanted())
            break;
        ExportElementProperty(repeated.state, repeated.control, items.next(), pRow,
                              bRowsAreRecords ? pRow : nullptr);
        items.written();
    }
}

/// A "Table" node that finds no table is told of as such.
void noticeMissingTable(const RepeatedNode& repeated) {
    if (repeated.state.pTable == nullptr && repeated.kind() == DataSourceKind::Record)
        repeated.state.notice(Notice::NoCurrentTable, repeated.dataSource());
}

/// Whether the related table holds a row for the current feature. The clause quotes nothing: the link field
/// is expected to be numeric.
bool hasRelatedRow(const RepeatedNode& repeated, std::int32_t lIndex) {
    if (repeated.state.pRelatedTable == nullptr)
        return false;
    RelatedRows rows(*repeated.state.pRelatedTable, *repeated.pRow, lIndex, repeated.control,
                     RelatedRows::Clause::Plain);
    return rows.next() != nullptr;
}

/// Whether a nested "Multiple" child of a repeated node is expanded once per item.
enum class NestedMultiples { Expanded, Ordinary };

const GisRowPtr noRecord;

/// Whether the row of the loop is what the kind of a leaf that names a field reads. Who traces is shown the
/// long way to the same value.
bool readsLoopRow(const ControlNode& leaf, const ExportState& state, NestedMultiples nested) {
    return state.options.pTrace == nullptr &&
           (leaf.pBinding->kind == DataSourceKind::Feature ||
            (nested == NestedMultiples::Ordinary && state.pTable != nullptr));
}

void exportSecondItemChild(const RepeatedNode& repeated, const ControlNode& child, const OutputElement& oItem,
                           const GisRowPtr& pRow, NestedMultiples nested) {
    const bool bExpanded = nested == NestedMultiples::Expanded;
    const bool bOfRow = child.bRepeated || !child.hasChildren();
    const Visit visit = !bExpanded ? Visit::WalkOrdinary : bOfRow ? Visit::RepeatRow : Visit::Walk;
    // What the first edition repeats with the row knows no parent; what binds anew does.
    const bool bBinds = visit != Visit::RepeatRow || child.pSecond->rows || child.pSecond->forEach;
    ExportSecondChild(repeated.state, repeated.state.pMapDoc, oItem, child,
                      bBinds ? &repeated.control : nullptr, pRow, bExpanded ? noRecord : pRow, visit);
}

void exportItemChild(const RepeatedNode& repeated, const ControlNode& child, const OutputElement& oItem,
                     const GisRowPtr& pRow, NestedMultiples nested) {
    if (child.bOfSecondEdition) {
        exportSecondItemChild(repeated, child, oItem, pRow, nested);
        return;
    }
    if (nested == NestedMultiples::Expanded && child.bRepeated) {
        ExportMultiple(repeated.state, child, appendNamed(child, oItem), pRow, nullptr, nullptr);
        return;
    }
    if (child.bNamesField && readsLoopRow(child, repeated.state, nested)) {
        ExportFieldOfRow(repeated.state, child, oItem, *pRow);
        return;
    }
    const OutputElement oTarget = makeChildOutput(repeated.state, child, oItem);
    // A row of a table serves as row and as record, a feature as row alone.
    const GisRowPtr& pRecord = nested == NestedMultiples::Ordinary ? pRow : noRecord;
    if (!child.hasChildren())
        ExportElementProperty(repeated.state, child, oTarget, pRow, pRecord);
    else if (nested == NestedMultiples::Ordinary)
        WalkOrdinaryControlNode(repeated.state, repeated.state.pMapDoc, oTarget, child, &repeated.control,
                                pRow, pRecord);
    else
        WalkControlNode(repeated.state, repeated.state.pMapDoc, oTarget, child, &repeated.control, pRow,
                        pRecord);
    checkAttributeName(repeated.state, child, oItem);
}

void exportItemChildren(const RepeatedNode& repeated, const OutputElement& oItem, const GisRowPtr& pRow,
                        NestedMultiples nested) {
    forEachChild(repeated.state, repeated.control, oItem,
                 [&](const ControlNode& child) { exportItemChild(repeated, child, oItem, pRow, nested); });
}

void exportRows(const RepeatedNode& repeated, const host::GisCursorPtr& pCursor, NestedMultiples nested) {
    if (pCursor == nullptr)
        return;
    Items items(repeated);
    const ExportState& state = repeated.state;
    RowScope scope(repeated.state, nested == NestedMultiples::Ordinary ? state.pTable : state.pFeatureClass);
    while (const GisRowPtr pRow = pCursor->nextRow()) {
        scope.turnTo(*pRow);
        const TracedItem item(repeated.state, repeated.control);
        if (!item.isWanted())
            break;
        exportItemChildren(repeated, items.next(), pRow, nested);
        items.written();
    }
}

/// The output of a node that has an item: an element that is held back for the first one is made.
OutputElement outputOfItem(const RepeatedNode& repeated) {
    const SecondNode* const pSecond = repeated.control.pSecond;
    const bool bMakes =
        pSecond != nullptr && pSecond->omit == Omit::Never && !repeated.control.bTargetsAttribute;
    return bMakes ? repeated.oOutput.made() : repeated.oOutput;
}

/// The class of a layer stays current behind it.
std::string nameOfCurrentLayer(const ExportState& state) {
    return state.pFeatureLayer == nullptr ? state.pFeatureClass->datasetName() : state.pFeatureLayer->name();
}

} // namespace

host::GisCursorPtr searchCurrentFeatures(ExportState& state, const ControlNode& repeated,
                                         const host::RowCondition* pCondition) {
    if (state.pFeatureLayer == nullptr || state.pFeatureClass == nullptr)
        return nullptr;
    if (state.pFeatureLayer->selectionCount() >= 1)
        return state.pFeatureLayer->searchSelection();
    if (pCondition != nullptr)
        return state.pFeatureClass->searchNarrowed(*pCondition, usesShapes(state, repeated));
    return usesShapes(state, repeated) ? state.pFeatureClass->search(nullptr)
                                       : state.pFeatureClass->searchWithoutShapes();
}

void repeatFeatureLeaf(const RepeatedNode& repeated) {
    if (repeated.control.merged.sIdentity != "FieldName" && !repeated.control.bHasText) {
        repeated.state.notice(Notice::RepeatIsSilent, repeated.dataSource());
        return;
    }
    if (repeated.pRow != nullptr)
        ExportElementProperty(repeated.state, repeated.control, outputOfItem(repeated), repeated.pRow,
                              nullptr);
    else
        exportLeafRows(repeated, searchCurrentFeatures(repeated.state, repeated.control), false);
}

void repeatRecordLeaf(const RepeatedNode& repeated) {
    if (repeated.pRecord != nullptr) {
        ExportElementProperty(repeated.state, repeated.control, outputOfItem(repeated), repeated.pRecord,
                              repeated.pRecord);
        return;
    }
    noticeMissingTable(repeated);
    exportLeafRows(repeated, searchCurrentTable(repeated.state), true);
}

/// The walker sees the repeated node once more, with a parent that is no feature: so nothing is ever written.
/// The node is named to the observer.
void repeatOverRelatedRows(const RepeatedNode& repeated) {
    repeated.state.notice(Notice::RepeatIsSilent, repeated.dataSource());
    if (repeated.pParent == nullptr || !exportOf(repeated.pParent->pBinding->kind).bIsOfFeatures ||
        repeated.pRow == nullptr)
        return;
    const std::string_view sLinkField = repeated.control.merged.sLinkField;
    const std::int32_t lIndex = repeated.pRow->fields().findField(sLinkField);
    if (sLinkField.empty() || lIndex < 0 || !hasRelatedRow(repeated, lIndex))
        return;
    WalkControlNode(repeated.state, repeated.state.pMapDoc, repeated.oOutput, repeated.control,
                    &repeated.control, nullptr, nullptr);
}

void repeatOverFeatures(const RepeatedNode& repeated) {
    if (repeated.pRow != nullptr)
        exportItemChildren(repeated, outputOfItem(repeated), repeated.pRow, NestedMultiples::Expanded);
    else
        exportRows(repeated, searchCurrentFeatures(repeated.state, repeated.control),
                   NestedMultiples::Expanded);
}

void repeatOverSubtypes(const RepeatedNode& repeated) {
    if (repeated.state.pFeatureClass == nullptr)
        return; // that there are no subtypes was told when they were looked for
    SubtypeProgress progress;
    ExportSubtypes(repeated.state, repeated.state.pFeatureClass, repeated.state.pFeatureClass->subtypes(),
                   repeated.control, repeated.oOutput, progress);
}

void repeatOverFields(const RepeatedNode& repeated) {
    if (repeated.state.pFeatureClass == nullptr) {
        repeated.state.notice(Notice::NoCurrentLayer, repeated.dataSource());
        return;
    }
    if (isInsideOtherSource(repeated.control.oNode))
        repeated.state.notice(Notice::FieldsOfLayer, nameOfCurrentLayer(repeated.state));
    if (!repeated.oOutput.isHeld() || repeated.state.pFeatureClass->fields()->count() > 0)
        ExportFields(repeated.state, repeated.state.pFeatureClass, repeated.control, outputOfItem(repeated));
}

void repeatOverShapes(const RepeatedNode& repeated) {
    if (repeated.state.pFeatureLayer == nullptr)
        repeated.state.notice(Notice::NoCurrentLayer, repeated.dataSource());
    OutputElement oOutput = repeated.oOutput;
    ExportGeometry(repeated.state, repeated.control, oOutput, repeated.pRow);
}

void repeatOverDomains(const RepeatedNode& repeated) {
    OutputElement oElement = repeated.oOutput;
    ExportDomains(repeated.state, repeated.control, oElement);
}

void repeatOverRelationshipClasses(const RepeatedNode& repeated) {
    OutputElement oElement = repeated.oOutput;
    ExportRelationshipClasses(repeated.state, repeated.control, oElement);
}

void repeatOverRecords(const RepeatedNode& repeated) {
    noticeMissingTable(repeated);
    exportRows(repeated, searchCurrentTable(repeated.state), NestedMultiples::Ordinary);
}

void ExportMultiple(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                    const GisRowPtr& pRow, const GisRowPtr& pRecord, const ControlNode* pParent) {
    if (!control.bRepeated && !control.hasChildren()) {
        ExportElementProperty(state, control, oOutput, pRow, pRecord);
        return;
    }
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        const RepeatedNode repeated{state, control, oOutput, pRow, pRecord, pParent};
        const KindExport& kind = exportOf(repeated.kind());
        if (kind.bRepeatBinds)
            keepAsCurrent(state, repeated.kind(), resolveBinding(state, *control.pBinding));
        if (const Repeat fnRepeat = control.hasChildren() ? kind.fnRepeatGroup : kind.fnRepeatLeaf)
            fnRepeat(repeated);
        else
            state.notice(Notice::RepeatIsSilent, repeated.dataSource());
    });
}

} // namespace halvane
