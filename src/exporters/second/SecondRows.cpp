#include "exporters/second/SecondRows.h"
#include "exporters/second/CurrentAgain.h"

#include "engine/output/ItemCounter.h"
#include "engine/second/SecondNode.h"
#include "engine/sources/Binding.h"
#include "exporters/ItemCopies.h"
#include "exporters/KindExports.h"
#include "exporters/second/LinkedRows.h"
#include "exporters/second/OrderedRows.h"
#include "exporters/second/RelationshipRows.h"
#include "host/Tables.h"

namespace halvane {

namespace {

const host::GisRow& rowAround(const ExportState& state) {
    if (state.pRowScope == nullptr || state.pRowScope->row() == nullptr)
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand that rows could be related to; put the node inside a repeated node of rows");
    return *state.pRowScope->row();
}

host::GisCursorPtr searchRelated(ExportState& state, const RowRules& rules) {
    if (!rules.sRelationship.empty())
        return searchRelationship(state, rules);
    if (state.pRelatedTable == nullptr)
        return nullptr; // that it was not found is told where it was looked for
    return std::make_shared<LinkedRows>(state, *state.pRelatedTable, rules.links, rowAround(state));
}

host::GisTablePtr tableOf(const ExportState& state, DataSourceKind kind) {
    switch (kind) {
    case DataSourceKind::RelatedTable:
        return state.pRelatedTable;
    case DataSourceKind::Table:
    case DataSourceKind::Record:
        return state.pTable;
    default:
        return state.pFeatureClass;
    }
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
    // A relationship class tells the table, too.
    const bool bBinds = control.pSecond->rows->sRelationship.empty();
    if (bBinds)
        BindControlNode(state, pMapDoc, control, pParent);
    if (bBinds && exportOf(control.pBinding->kind).bRepeatBinds)
        keepAsCurrent(state, control.pBinding->kind, resolveBinding(state, *control.pBinding));
    CurrentAgain ofItems(state);
    host::GisCursorPtr pCursor = searchRows(state, control);
    const bool bInsideItem = state.pRowScope != nullptr;
    RowScope scope(state, tableOf(state, control.pBinding->kind));
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
