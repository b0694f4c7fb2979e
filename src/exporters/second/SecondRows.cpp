#include "exporters/second/SecondRows.h"

#include "engine/output/ItemCounter.h"
#include "engine/second/SecondNode.h"
#include "engine/sources/Binding.h"
#include "exporters/ItemCopies.h"
#include "exporters/KindExports.h"
#include "exporters/second/LinkedRows.h"
#include "exporters/second/OrderedRows.h"
#include "host/Tables.h"

namespace halvane {

namespace {

/// What is current, as it was when this was made: it is so again when this goes.
class CurrentAgain {
public:
    explicit CurrentAgain(ExportState& state)
        : state_(state), pMap_(state.pMap), pFeatureLayer_(state.pFeatureLayer),
          pFeatureClass_(state.pFeatureClass), pWorkspace_(state.pWorkspace), pTable_(state.pTable),
          pRelatedTable_(state.pRelatedTable) {}
    CurrentAgain(const CurrentAgain&) = delete;
    CurrentAgain& operator=(const CurrentAgain&) = delete;
    ~CurrentAgain() { restore(); }

    void restore() {
        restore(state_.pMap, pMap_);
        restore(state_.pFeatureLayer, pFeatureLayer_);
        restore(state_.pFeatureClass, pFeatureClass_);
        restore(state_.pWorkspace, pWorkspace_);
        restore(state_.pTable, pTable_);
        restore(state_.pRelatedTable, pRelatedTable_);
    }

private:
    /// Mostly nothing has changed, and counting owners costs more than comparing.
    template<class Object>
    static void restore(Object& pNow, const Object& pBefore) {
        if (pNow != pBefore)
            pNow = pBefore;
    }

    ExportState& state_;
    host::GisMapPtr pMap_;
    host::GisFeatureLayerPtr pFeatureLayer_;
    host::GisFeatureClassPtr pFeatureClass_;
    host::GisWorkspacePtr pWorkspace_;
    host::GisTablePtr pTable_;
    host::GisTablePtr pRelatedTable_;
};

const host::GisRow& rowAround(const ExportState& state) {
    if (state.pRowScope == nullptr || state.pRowScope->row() == nullptr)
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand that rows could be related to; put the node inside a repeated node of rows");
    return *state.pRowScope->row();
}

host::GisCursorPtr searchRelated(ExportState& state, const RowRules& rules) {
    if (state.pRelatedTable == nullptr)
        return nullptr; // that it was not found is told where it was looked for
    return std::make_shared<LinkedRows>(state, *state.pRelatedTable, rules.links, rowAround(state));
}

host::GisCursorPtr searchRows(ExportState& state, const ControlNode& control) {
    switch (control.pBinding->kind) {
    case DataSourceKind::RelatedTable:
        return searchRelated(state, *control.pSecond->rows);
    case DataSourceKind::Table:
    case DataSourceKind::Record:
        if (state.pTable == nullptr)
            state.notice(Notice::NoCurrentTable, control.merged.sDataSource);
        return state.pTable == nullptr ? nullptr : state.pTable->search(nullptr);
    default:
        if (state.pFeatureLayer == nullptr)
            state.notice(Notice::NoCurrentLayer, control.merged.sDataSource);
        return searchCurrentFeatures(state, control);
    }
}

void writeItem(ExportState& state, const ControlNode& control, const OutputElement& oItem,
               const GisRowPtr& pRow) {
    if (control.hasChildren())
        forEachChild(state, control, oItem, [&](const ControlNode& child) {
            ExportChild(state, state.pMapDoc, oItem, child, &control, pRow, pRow);
        });
    else
        ExportElementProperty(state, control, oItem, pRow, pRow);
}

} // namespace

void repeatSecondRows(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const ControlNode& control,
                      const ControlNode* pParent, const OutputElement& oFirst) {
    const CurrentAgain again(state);
    BindControlNode(state, pMapDoc, control, pParent);
    if (exportOf(control.pBinding->kind).bRepeatBinds)
        keepAsCurrent(state, control.pBinding->kind, resolveBinding(state, *control.pBinding));
    CurrentAgain ofItems(state);
    host::GisCursorPtr pCursor = searchRows(state, control);
    const bool bInsideItem = state.pRowScope != nullptr;
    RowScope scope(state);
    OrderedRows rows(state, scope, *control.pSecond->rows, std::move(pCursor));
    ItemCopies copies(state, control, oFirst, control.pName);
    ItemCounter counter(state.options.lItemLimit);
    while (const GisRowPtr pRow = rows.next()) {
        const OutputElement& oItem = counter.value() > 0 ? copies.next()
                                     : bInsideItem       ? copies.firstInItem()
                                                         : copies.first();
        writeItem(state, control, oItem, pRow);
        ofItems.restore();
        reportItem(state, control);
        counter.increment();
    }
}

} // namespace halvane
