#include "engine/ModExporter.h"

namespace halvane {

namespace {

using host::GisMapDocumentPtr;

/// Whether the node's own "Multiple" sends it to the multiple-item export.
enum class EntriesRule { Heeded, Ignored };

host::GisMapPtr mapOfNode(ExportState& state, const GisMapDocumentPtr& pMapDoc, const Binding& binding,
                          std::string_view sParentLocation) {
    if (binding.bLocationBlank && !binding.bFrameBlank) {
        const auto nFailuresBefore = state.nFailures;
        auto pMap = FindMapByName(state, pMapDoc, binding.sDataFrame);
        if (pMap == nullptr && state.nFailures == nFailuresBefore)
            state.notice(Notice::ResolvedToNothing, "DataFrame");
        return pMap;
    }
    if (pMapDoc == nullptr)
        return nullptr;
    if (binding.sDataLocation.empty() || !binding.sDataFrame.empty())
        return state.pShownMap != nullptr ? state.pShownMap : pMapDoc->focusMap();
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
        state.dCurrentObjects.keep(ObjectKey::DataFrame, state.pMap);
}

void bindDataSource(ExportState& state, const Binding& binding) {
    const Value& result = resolveBinding(state, binding);
    // The node's map is bound by its data frame, and a TIN's workspace by the value exporters alone.
    if (rowOf(binding.kind).object.bCurrentInWalk)
        keepAsCurrent(state, binding.kind, result);
}

void visit(ExportState& state, GisMapDocumentPtr& pMapDoc, const OutputElement& oOutput,
           const ControlNode& control, const ControlNode* pParent, const GisRowPtr& pRow,
           const GisRowPtr& pRecord, EntriesRule entriesRule) {
    const ActiveNodeScope scope(state, control);
    if (state.options.pObserver != nullptr && !state.options.pObserver->goesOn())
        throw ExportCancelled{};
    trapFailures(state, [&] {
        if (!(control.bReadsRow || control.bReadsItem) || control.hasChildren())
            BindControlNode(state, pMapDoc, control, pParent);
        if (entriesRule == EntriesRule::Heeded && control.bRepeated) {
            ExportMultiple(state, control, oOutput, pRow, pRecord, pParent);
            return;
        }
        if (!control.hasChildren()) {
            ExportElementProperty(state, control, oOutput, pRow, pRecord);
            return;
        }
        forEachChild(state, control, oOutput, [&](const ControlNode& child) {
            ExportChild(state, pMapDoc, oOutput, child, &control, pRow, pRecord);
        });
    });
}

} // namespace

void BindControlNode(ExportState& state, GisMapDocumentPtr& pMapDoc, const ControlNode& control,
                     const ControlNode* pParent) {
    bindMap(state, pMapDoc, *control.pBinding,
            pParent == nullptr ? std::string_view() : pParent->merged.sDataLocation);
    bindDataSource(state, *control.pBinding);
}

void ExportChild(ExportState& state, GisMapDocumentPtr& pMapDoc, const OutputElement& oOutput,
                 const ControlNode& child, const ControlNode* pParent, const GisRowPtr& pRow,
                 const GisRowPtr& pRecord) {
    if (child.bOfSecondEdition) {
        ExportSecondChild(state, pMapDoc, oOutput, child, pParent, pRow, pRecord, Visit::Walk);
        return;
    }
    const OutputElement oTarget = makeChildOutput(state, child, oOutput);
    WalkControlNode(state, pMapDoc, oTarget, child, pParent, pRow, pRecord);
    checkAttributeName(state, child, oOutput);
}

void WalkControlNode(ExportState& state, GisMapDocumentPtr& pMapDoc, const OutputElement& oOutput,
                     const ControlNode& control, const ControlNode* pParent, const GisRowPtr& pRow,
                     const GisRowPtr& pRecord) {
    visit(state, pMapDoc, oOutput, control, pParent, pRow, pRecord, EntriesRule::Heeded);
}

void WalkOrdinaryControlNode(ExportState& state, GisMapDocumentPtr& pMapDoc, const OutputElement& oOutput,
                             const ControlNode& control, const ControlNode* pParent, const GisRowPtr& pRow,
                             const GisRowPtr& pRecord) {
    // A leaf of a row binds nothing before.
    if (!control.hasChildren())
        ExportElementProperty(state, control, oOutput, pRow, pRecord);
    else
        visit(state, pMapDoc, oOutput, control, pParent, pRow, pRecord, EntriesRule::Ignored);
}

} // namespace halvane
