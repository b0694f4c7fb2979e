#include "collection/Text.h"
#include "engine/Binding.h"
#include "engine/ModExporter.h"

namespace halvane {

namespace {

using host::GisMapDocumentPtr;

/// Whether the node's own "Multiple" sends it to the multiple-item export.
enum class EntriesRule { Heeded, Ignored };

host::GisMapPtr mapOfNode(ExportState& state, const GisMapDocumentPtr& pMapDoc, const Binding& binding,
                          std::string_view sParentLocation) {
    const bool bFrameNamed = !trimBlanks(binding.sDataFrame).empty();
    if (trimBlanks(binding.sDataLocation).empty() && bFrameNamed) {
        const auto nFailuresBefore = state.nFailures;
        auto pMap = FindMapByName(state, pMapDoc, binding.sDataFrame);
        if (pMap == nullptr && state.nFailures == nFailuresBefore)
            state.notice(Notice::ResolvedToNothing, "DataFrame");
        return pMap;
    }
    if (pMapDoc == nullptr)
        return nullptr;
    if (binding.sDataLocation.empty() || !binding.sDataFrame.empty())
        return pMapDoc->focusMap();
    // Here the node works from its data location alone. A layer bound before the location was named is not
    // its own.
    if (sParentLocation.empty())
        state.pFeatureLayer.reset();
    return nullptr;
}

void bindMap(ExportState& state, const GisMapDocumentPtr& pMapDoc, const Binding& binding,
             std::string_view sParentLocation) {
    state.pMap = mapOfNode(state, pMapDoc, binding, sParentLocation);
    if (state.pMap != nullptr)
        state.keepObject("DataFrame", state.pMap);
}

void bindDataSource(ExportState& state, const Binding& binding) {
    const Value result = resolveBinding(state, binding);
    // The node's map is bound by its data frame, and a TIN's workspace by the value exporters alone.
    if (binding.sDataSource != "Map" && binding.sDataSource != "TinWorkspace")
        keepAsCurrent(state, binding.sDataSource, result);
}

void visit(ExportState& state, GisMapDocumentPtr& pMapDoc, Node oOutNode, Node oControlNode,
           const dCollection* dParentAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord,
           EntriesRule entriesRule) {
    const ActiveNodeScope scope(state, oControlNode);
    trapFailures(state, [&] {
        const bool bMultiple =
            entriesRule == EntriesRule::Heeded && ClsXMLNode(oControlNode).Entries() == "Multiple";
        dCollection dMerged;
        MergeAttributes(state, oControlNode, dParentAttributes, dMerged);
        const Binding binding(dMerged);
        bindMap(state, pMapDoc, binding,
                dParentAttributes == nullptr ? std::string()
                                             : dParentAttributes->GetValueString("DataLocation"));
        bindDataSource(state, binding);

        Node oChild = firstControlChild(state, oControlNode);
        if (bMultiple) {
            ExportMultiple(state, oControlNode, oOutNode, dMerged, pRow, pRecord, dParentAttributes);
            return;
        }
        if (!oChild) {
            ExportElementProperty(state, oControlNode, oOutNode, dMerged, pRow, pRecord, dParentAttributes);
            return;
        }
        for (; oChild; oChild = nextControlSibling(state, oChild)) {
            const Node oTarget = makeChildOutput(state, ClsXMLNode(oChild), oOutNode);
            WalkControlNode(state, pMapDoc, oTarget, oChild, &dMerged, pRow, pRecord);
        }
    });
}

} // namespace

void WalkControlNode(ExportState& state, GisMapDocumentPtr& pMapDoc, Node oOutNode, Node oControlNode,
                     const dCollection* dParentAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord) {
    visit(state, pMapDoc, oOutNode, oControlNode, dParentAttributes, pRow, pRecord, EntriesRule::Heeded);
}

void WalkOrdinaryControlNode(ExportState& state, GisMapDocumentPtr& pMapDoc, Node oOutNode, Node oControlNode,
                             const dCollection* dParentAttributes, const GisRowPtr& pRow,
                             const GisRowPtr& pRecord) {
    visit(state, pMapDoc, oOutNode, oControlNode, dParentAttributes, pRow, pRecord, EntriesRule::Ignored);
}

} // namespace halvane
