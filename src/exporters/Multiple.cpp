// Repeats a control node over the items of its data source.

#include "collection/Text.h"
#include "engine/Binding.h"
#include "engine/ItemCounter.h"
#include "engine/ModExporter.h"
#include "exporters/ItemCopies.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

/// One call: a repeated control node, where its output goes and what was handed in.
struct Call {
    ExportState& state;
    Node oControlNode;
    ClsXMLNode node;
    Node oOutputElement;
    const dCollection& dAttributes;
    const GisRowPtr& pRow;
    const GisRowPtr& pRecord;
    const dCollection* dParentAttributes;
    std::string sDataSource;
};

/// The items of one call: their elements, their number and those who hear of them.
class Items {
public:
    explicit Items(const Call& call)
        : call_(call), copies_(call.state, call.oControlNode, call.oOutputElement, call.node.TagName()),
          counter_(call.state.options.lItemLimit) {}

    /// The element of the next item.
    Node next() { return counter_.value() == 0 ? copies_.current() : copies_.next(); }

    /// The item is written.
    void written() {
        reportItem(call_.state, call_.oControlNode);
        counter_.increment();
    }

private:
    const Call& call_;
    ItemCopies copies_;
    ItemCounter counter_;
};

void bind(ExportState& state, const dCollection& dAttributes) {
    constexpr std::array<std::string_view, 10> boundKinds{
        "Map",          "FeatureLayer", "MapLayer", "Feature",      "FeatureTable",
        "TinWorkspace", "Workspace",    "Table",    "RelatedTable", "TinLayer"};
    const Binding binding(dAttributes);
    if (std::find(boundKinds.begin(), boundKinds.end(), binding.sDataSource) != boundKinds.end())
        keepAsCurrent(state, binding.sDataSource, resolveBinding(state, binding));
}

bool isFeatureKind(std::string_view sDataSource) {
    return sDataSource == "FeatureTable" || sDataSource == "Feature";
}

bool isRecordKind(std::string_view sDataSource) {
    return sDataSource == "Record" || sDataSource == "Table";
}

host::GisCursorPtr searchCurrentTable(ExportState& state) {
    return state.pTable == nullptr ? nullptr : state.pTable->search(nullptr);
}

// ---- A node without children ----

/// Writes one value a row; the rows of a table are handed on as records too.
void exportLeafRows(const Call& call, const host::GisCursorPtr& pCursor, bool bRowsAreRecords) {
    if (pCursor == nullptr)
        return;
    Items items(call);
    while (const GisRowPtr pRow = pCursor->nextRow()) {
        const Node oItem = items.next();
        ExportElementProperty(call.state, call.oControlNode, oItem, call.dAttributes, pRow,
                              bRowsAreRecords ? pRow : nullptr, nullptr);
        items.written();
    }
}

void exportFeatureLeaf(const Call& call) {
    if (call.dAttributes.GetValueString("Identity") != "FieldName") {
        call.state.notice(Notice::RepeatIsSilent, call.sDataSource);
        return;
    }
    if (call.pRow != nullptr)
        ExportElementProperty(call.state, call.oControlNode, call.oOutputElement, call.dAttributes, call.pRow,
                              nullptr, nullptr);
    else
        exportLeafRows(call, searchCurrentFeatures(call.state), false);
}

void exportRecordLeaf(const Call& call) {
    if (call.pRecord != nullptr)
        ExportElementProperty(call.state, call.oControlNode, call.oOutputElement, call.dAttributes,
                              call.pRecord, call.pRecord, nullptr);
    else
        exportLeafRows(call, searchCurrentTable(call.state), true);
}

void exportLeaf(const Call& call) {
    if (isFeatureKind(call.sDataSource))
        exportFeatureLeaf(call);
    else if (isRecordKind(call.sDataSource))
        exportRecordLeaf(call);
    else
        call.state.notice(Notice::RepeatIsSilent, call.sDataSource);
}

// ---- A node with children ----

/// Whether the related table holds a row for the current feature. The clause quotes nothing: the link field
/// is expected to be numeric.
bool hasRelatedRow(const Call& call, std::string_view sLinkField, std::int32_t lIndex) {
    if (call.state.pRelatedTable == nullptr)
        return false;
    host::GisQueryFilter filter;
    filter.sWhereClause = std::string(sLinkField) + " = ";
    appendText(filter.sWhereClause, call.pRow->value(lIndex));
    const auto pCursor = call.state.pRelatedTable->search(&filter);
    return pCursor->nextRow() != nullptr;
}

/// The walker sees the repeated node once more, with a parent that is no feature: so nothing is ever written.
/// The node is named to the observer.
void exportRelatedRows(const Call& call) {
    const std::string sParentSource = call.dParentAttributes == nullptr
                                          ? std::string()
                                          : call.dParentAttributes->GetValueString("DataSource");
    call.state.notice(Notice::RepeatIsSilent, call.sDataSource);
    if (!isFeatureKind(sParentSource) || call.pRow == nullptr)
        return;
    const std::string sLinkField = call.dAttributes.GetValueString("LinkField");
    const std::int32_t lIndex = call.pRow->fields().findField(sLinkField);
    if (sLinkField.empty() || lIndex < 0 || !hasRelatedRow(call, sLinkField, lIndex))
        return;
    WalkControlNode(call.state, call.state.pMapDoc, call.oOutputElement, call.oControlNode, &call.dAttributes,
                    nullptr, nullptr);
}

/// Whether a nested "Multiple" child of a repeated node is expanded once per item.
enum class NestedMultiples { Expanded, Ordinary };

void exportNestedMultiple(const Call& call, const ClsXMLNode& child, Node oItemElement,
                          const GisRowPtr& pRow) {
    dCollection dChildAttributes;
    MergeAttributes(call.state, child.DOMNode(), &call.dAttributes, dChildAttributes);
    const Node oElement = Node(oItemElement).appendChild(newOutputElement(call.state, child.TagName()));
    ExportMultiple(call.state, child.DOMNode(), oElement, dChildAttributes, pRow, nullptr, nullptr);
}

void exportItemChild(const Call& call, Node oChild, Node oItemElement, const GisRowPtr& pRow,
                     NestedMultiples nested) {
    const ClsXMLNode child(oChild);
    if (nested == NestedMultiples::Expanded && child.Entries() == "Multiple") {
        exportNestedMultiple(call, child, oItemElement, pRow);
        return;
    }
    const Node oTarget = makeChildOutput(call.state, child, oItemElement);
    // A row of a table serves as row and as record, a feature as row alone.
    const GisRowPtr pRecord = nested == NestedMultiples::Ordinary ? pRow : nullptr;
    if (!firstControlChild(call.state, oChild))
        ExportElementProperty(call.state, oChild, oTarget, call.dAttributes, pRow, pRecord, nullptr);
    else if (nested == NestedMultiples::Ordinary)
        WalkOrdinaryControlNode(call.state, call.state.pMapDoc, oTarget, oChild, &call.dAttributes, pRow,
                                pRecord);
    else
        WalkControlNode(call.state, call.state.pMapDoc, oTarget, oChild, &call.dAttributes, pRow, pRecord);
}

void exportItemChildren(const Call& call, Node oItemElement, const GisRowPtr& pRow, NestedMultiples nested) {
    for (Node oChild = firstControlChild(call.state, call.oControlNode); oChild;
         oChild = nextControlSibling(call.state, oChild))
        exportItemChild(call, oChild, oItemElement, pRow, nested);
}

void exportRows(const Call& call, const host::GisCursorPtr& pCursor, NestedMultiples nested) {
    if (pCursor == nullptr)
        return;
    Items items(call);
    while (const GisRowPtr pRow = pCursor->nextRow()) {
        const Node oItem = items.next();
        exportItemChildren(call, oItem, pRow, nested);
        items.written();
    }
}

void exportFeatures(const Call& call) {
    if (call.pRow != nullptr)
        exportItemChildren(call, call.oOutputElement, call.pRow, NestedMultiples::Expanded);
    else
        exportRows(call, searchCurrentFeatures(call.state), NestedMultiples::Expanded);
}

void exportSubtypesOfClass(const Call& call) {
    const auto pSubtypes = call.state.pFeatureClass->subtypes();
    SubtypeProgress progress;
    ExportSubtypes(call.state, call.state.pFeatureClass, pSubtypes, call.oControlNode, call.oOutputElement,
                   call.dAttributes, progress);
}

void exportGroup(const Call& call) {
    const std::string& sKind = call.sDataSource;
    Node oOutputElement = call.oOutputElement;
    if (containsIgnoringCase(sKind, "GEOMETRY"))
        ExportGeometry(call.state, call.oControlNode, oOutputElement, call.dAttributes, call.pRow);
    else if (sKind == "WorkspaceDomain")
        ExportDomains(call.state, call.oControlNode, oOutputElement, call.dAttributes);
    else if (sKind == "Relationship")
        ExportRelationshipClasses(call.state, call.oControlNode, oOutputElement, call.dAttributes);
    else if (sKind == "SubType" && call.state.pFeatureClass != nullptr)
        exportSubtypesOfClass(call);
    else if (sKind == "Field" && call.state.pFeatureClass != nullptr)
        ExportFields(call.state, call.state.pFeatureClass, call.oControlNode, oOutputElement,
                     call.dAttributes);
    else if (sKind == "RelatedTable")
        exportRelatedRows(call);
    else if (sKind == "Feature")
        exportFeatures(call);
    else if (isRecordKind(sKind))
        exportRows(call, searchCurrentTable(call.state), NestedMultiples::Ordinary);
    else
        call.state.notice(Notice::RepeatIsSilent, sKind);
}

} // namespace

host::GisCursorPtr searchCurrentFeatures(ExportState& state) {
    if (state.pFeatureLayer == nullptr || state.pFeatureClass == nullptr)
        return nullptr;
    return state.pFeatureLayer->selectionCount() < 1 ? state.pFeatureClass->search(nullptr)
                                                     : state.pFeatureLayer->searchSelection();
}

void ExportMultiple(ExportState& state, Node oControlNode, Node oOutputElement,
                    const dCollection& dNodeAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord,
                    const dCollection* dParentAttributes) {
    const ActiveNodeScope scope(state, oControlNode);
    trapFailures(state, [&] {
        bind(state, dNodeAttributes);
        const Call call{state,          oControlNode,      ClsXMLNode(oControlNode),
                        oOutputElement, dNodeAttributes,   pRow,
                        pRecord,        dParentAttributes, dNodeAttributes.GetValueString("DataSource")};
        if (firstControlChild(state, oControlNode))
            exportGroup(call);
        else
            exportLeaf(call);
    });
}

} // namespace halvane
