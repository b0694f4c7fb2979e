// Repeats a control node over the items of its data source.

#include "engine/Binding.h"
#include "engine/ItemCounter.h"
#include "exporters/ItemCopies.h"
#include "exporters/KindExports.h"
#include "exporters/RelatedRows.h"
#include "exporters/RepeatedNode.h"
#include "exporters/ShapeUse.h"

#include <string>

namespace halvane {

namespace {

using Call = RepeatedNode;

/// The items of one call: their elements, their number and those who hear of them.
class Items {
public:
    explicit Items(const Call& call)
        : call_(call), copies_(call.state, call.control, call.oOutput, call.control.pName),
          counter_(call.state.options.lItemLimit) {}

    /// The element of the next item.
    const OutputElement& next() {
        if (counter_.value() > 0)
            return copies_.next();
        const bool bInsideItem = call_.pRow != nullptr || call_.pRecord != nullptr;
        return bInsideItem ? copies_.current() : copies_.first();
    }

    /// The item is written.
    void written() {
        reportItem(call_.state, call_.control);
        counter_.increment();
    }

private:
    const Call& call_;
    ItemCopies copies_;
    ItemCounter counter_;
};

host::GisCursorPtr searchCurrentTable(ExportState& state) {
    return state.pTable == nullptr ? nullptr : state.pTable->search(nullptr);
}

/// Writes one value a row; the rows of a table are handed on as records too.
void exportLeafRows(const Call& call, const host::GisCursorPtr& pCursor, bool bRowsAreRecords) {
    if (pCursor == nullptr)
        return;
    Items items(call);
    while (const GisRowPtr pRow = pCursor->nextRow()) {
        ExportElementProperty(call.state, call.control, items.next(), pRow, bRowsAreRecords ? pRow : nullptr);
        items.written();
    }
}

/// A "Table" node that finds no table is told of as such.
void noticeMissingTable(const Call& call) {
    if (call.state.pTable == nullptr && call.kind() == DataSourceKind::Record)
        call.state.notice(Notice::NoCurrentTable, call.dataSource());
}

/// Whether the related table holds a row for the current feature. The clause quotes nothing: the link field
/// is expected to be numeric.
bool hasRelatedRow(const Call& call, std::int32_t lIndex) {
    if (call.state.pRelatedTable == nullptr)
        return false;
    RelatedRows rows(*call.state.pRelatedTable, *call.pRow, lIndex, call.control, RelatedRows::Clause::Plain);
    return rows.next() != nullptr;
}

/// Whether a nested "Multiple" child of a repeated node is expanded once per item.
enum class NestedMultiples { Expanded, Ordinary };

const GisRowPtr noRecord;

/// Whether the row of the loop is what the kind of a leaf that names a field reads.
bool readsLoopRow(const ControlNode& leaf, const ExportState& state, NestedMultiples nested) {
    return leaf.pBinding->kind == DataSourceKind::Feature ||
           (nested == NestedMultiples::Ordinary && state.pTable != nullptr);
}

void exportItemChild(const Call& call, const ControlNode& child, const OutputElement& oItem,
                     const GisRowPtr& pRow, NestedMultiples nested) {
    if (nested == NestedMultiples::Expanded && child.bRepeated) {
        ExportMultiple(call.state, child, appendNamed(child, oItem), pRow, nullptr, nullptr);
        return;
    }
    if (child.bNamesField && readsLoopRow(child, call.state, nested)) {
        ExportFieldOfRow(call.state, child, oItem, *pRow);
        return;
    }
    const OutputElement oTarget = makeChildOutput(call.state, child, oItem);
    // A row of a table serves as row and as record, a feature as row alone.
    const GisRowPtr& pRecord = nested == NestedMultiples::Ordinary ? pRow : noRecord;
    if (!child.hasChildren())
        ExportElementProperty(call.state, child, oTarget, pRow, pRecord);
    else if (nested == NestedMultiples::Ordinary)
        WalkOrdinaryControlNode(call.state, call.state.pMapDoc, oTarget, child, &call.control, pRow, pRecord);
    else
        WalkControlNode(call.state, call.state.pMapDoc, oTarget, child, &call.control, pRow, pRecord);
    checkAttributeName(call.state, child, oItem);
}

void exportItemChildren(const Call& call, const OutputElement& oItem, const GisRowPtr& pRow,
                        NestedMultiples nested) {
    for (const ControlNode& child : childrenOf(call.control))
        exportItemChild(call, child, oItem, pRow, nested);
}

void exportRows(const Call& call, const host::GisCursorPtr& pCursor, NestedMultiples nested) {
    if (pCursor == nullptr)
        return;
    Items items(call);
    while (const GisRowPtr pRow = pCursor->nextRow()) {
        exportItemChildren(call, items.next(), pRow, nested);
        items.written();
    }
}

/// Whether the nearest enclosing node that is about fields is about a table's or another layer's.
bool isInsideOtherSource(Node oNode) {
    for (oNode = oNode.parentNode(); oNode; oNode = oNode.parentNode()) {
        switch (exportOf(dataSourceKindOf(oNode.getAttribute("DataSource").value_or(""))).fieldsInside) {
        case FieldsInside::AnothersToo:
            return true;
        case FieldsInside::Layers:
            return false;
        case FieldsInside::Any:
            break;
        }
    }
    return false;
}

/// The class of a layer stays current behind it.
std::string nameOfCurrentLayer(const ExportState& state) {
    return state.pFeatureLayer == nullptr ? state.pFeatureClass->datasetName() : state.pFeatureLayer->name();
}

} // namespace

host::GisCursorPtr searchCurrentFeatures(ExportState& state, const ControlNode& repeated) {
    if (state.pFeatureLayer == nullptr || state.pFeatureClass == nullptr)
        return nullptr;
    if (state.pFeatureLayer->selectionCount() >= 1)
        return state.pFeatureLayer->searchSelection();
    return usesShapes(state, repeated) ? state.pFeatureClass->search(nullptr)
                                       : state.pFeatureClass->searchWithoutShapes();
}

void repeatFeatureLeaf(const RepeatedNode& call) {
    if (call.control.merged.sIdentity != "FieldName") {
        call.state.notice(Notice::RepeatIsSilent, call.dataSource());
        return;
    }
    if (call.pRow != nullptr)
        ExportElementProperty(call.state, call.control, call.oOutput, call.pRow, nullptr);
    else
        exportLeafRows(call, searchCurrentFeatures(call.state, call.control), false);
}

void repeatRecordLeaf(const RepeatedNode& call) {
    if (call.pRecord != nullptr) {
        ExportElementProperty(call.state, call.control, call.oOutput, call.pRecord, call.pRecord);
        return;
    }
    noticeMissingTable(call);
    exportLeafRows(call, searchCurrentTable(call.state), true);
}

/// The walker sees the repeated node once more, with a parent that is no feature: so nothing is ever written.
/// The node is named to the observer.
void repeatOverRelatedRows(const RepeatedNode& call) {
    call.state.notice(Notice::RepeatIsSilent, call.dataSource());
    if (call.pParent == nullptr || !exportOf(call.pParent->pBinding->kind).bIsOfFeatures ||
        call.pRow == nullptr)
        return;
    const std::string_view sLinkField = call.control.merged.sLinkField;
    const std::int32_t lIndex = call.pRow->fields().findField(sLinkField);
    if (sLinkField.empty() || lIndex < 0 || !hasRelatedRow(call, lIndex))
        return;
    WalkControlNode(call.state, call.state.pMapDoc, call.oOutput, call.control, &call.control, nullptr,
                    nullptr);
}

void repeatOverFeatures(const RepeatedNode& call) {
    if (call.pRow != nullptr)
        exportItemChildren(call, call.oOutput, call.pRow, NestedMultiples::Expanded);
    else
        exportRows(call, searchCurrentFeatures(call.state, call.control), NestedMultiples::Expanded);
}

void repeatOverSubtypes(const RepeatedNode& call) {
    if (call.state.pFeatureClass == nullptr)
        return; // that there are no subtypes was told when they were looked for
    const auto pSubtypes = call.state.pFeatureClass->subtypes();
    SubtypeProgress progress;
    ExportSubtypes(call.state, call.state.pFeatureClass, pSubtypes, call.control, call.oOutput.node(),
                   progress);
}

void repeatOverFields(const RepeatedNode& call) {
    if (call.state.pFeatureClass == nullptr) {
        call.state.notice(Notice::NoCurrentLayer, call.dataSource());
        return;
    }
    if (isInsideOtherSource(call.control.oNode))
        call.state.notice(Notice::FieldsOfLayer, nameOfCurrentLayer(call.state));
    ExportFields(call.state, call.state.pFeatureClass, call.control, call.oOutput.node());
}

void repeatOverShapes(const RepeatedNode& call) {
    if (call.state.pFeatureLayer == nullptr)
        call.state.notice(Notice::NoCurrentLayer, call.dataSource());
    OutputElement oOutput = call.oOutput;
    ExportGeometry(call.state, call.control, oOutput, call.pRow);
}

void repeatOverDomains(const RepeatedNode& call) {
    Node oElement = call.oOutput.node();
    ExportDomains(call.state, call.control, oElement);
}

void repeatOverRelationshipClasses(const RepeatedNode& call) {
    Node oElement = call.oOutput.node();
    ExportRelationshipClasses(call.state, call.control, oElement);
}

void repeatOverRecords(const RepeatedNode& call) {
    noticeMissingTable(call);
    exportRows(call, searchCurrentTable(call.state), NestedMultiples::Ordinary);
}

void ExportMultiple(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                    const GisRowPtr& pRow, const GisRowPtr& pRecord, const ControlNode* pParent) {
    const ActiveNodeScope scope(state, control.oNode);
    trapFailures(state, [&] {
        const RepeatedNode call{state, control, oOutput, pRow, pRecord, pParent};
        const KindExport& kind = exportOf(call.kind());
        if (kind.bRepeatBinds)
            keepAsCurrent(state, call.kind(), resolveBinding(state, *control.pBinding));
        if (const Repeat fnRepeat = control.hasChildren() ? kind.fnRepeatGroup : kind.fnRepeatLeaf)
            fnRepeat(call);
        else
            state.notice(Notice::RepeatIsSilent, call.dataSource());
    });
}

} // namespace halvane
