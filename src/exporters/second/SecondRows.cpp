#include "exporters/second/SecondRows.h"

#include "engine/TracedItem.h"
#include "engine/output/ItemCounter.h"
#include "engine/second/GroupScope.h"
#include "engine/second/SecondNode.h"
#include "engine/sources/Binding.h"
#include "exporters/ItemCopies.h"
#include "exporters/KindExports.h"
#include "exporters/second/CurrentAgain.h"
#include "exporters/second/LinkedRows.h"
#include "exporters/second/OrderedRows.h"
#include "exporters/second/PushedCondition.h"
#include "exporters/second/RelationshipRows.h"
#include "exporters/second/RowGroups.h"
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
    if (rules.links.empty())
        throw Failure(FailureNumber::ObjectVariableNotSet, "no group of rows of this table is at hand");
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

/// What of the node's condition the data can test.
std::optional<host::RowCondition> conditionOf(ExportState& state, const ControlNode& control) {
    const auto& where = control.pSecond->rows->where;
    if (!where)
        return std::nullopt;
    const RowScope scope(state, tableOf(state, control.pBinding->kind));
    return pushedCondition(state, *where);
}

host::GisCursorPtr searchTable(ExportState& state, const ControlNode& control) {
    if (state.pTable == nullptr) {
        state.notice(Notice::NoCurrentTable, control.merged.sDataSource);
        return nullptr;
    }
    const auto condition = conditionOf(state, control);
    return condition ? state.pTable->searchNarrowed(*condition, true) : state.pTable->search(nullptr);
}

host::GisCursorPtr searchRows(ExportState& state, const ControlNode& control) {
    const RowRules& rules = *control.pSecond->rows;
    const bool bByKeys = !rules.links.empty() || !rules.sRelationship.empty();
    if (auto pOfGroup =
            bByKeys || !rules.bEach ? nullptr : searchGroup(state, tableOf(state, control.pBinding->kind)))
        return pOfGroup;
    switch (control.pBinding->kind) {
    case DataSourceKind::RelatedTable:
        return searchRelated(state, *control.pSecond->rows);
    case DataSourceKind::Table:
    case DataSourceKind::Record:
        return searchTable(state, control);
    default: {
        if (state.pFeatureLayer == nullptr)
            state.notice(Notice::NoCurrentLayer, control.merged.sDataSource);
        const auto condition = conditionOf(state, control);
        return searchCurrentFeatures(state, control, condition ? &*condition : nullptr);
    }
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

/// The items of a node, their elements and their number.
class SecondItems {
public:
    SecondItems(ExportState& state, const ControlNode& control, const OutputElement& oFirst)
        : state_(state), control_(control), bInsideItem_(state.pRowScope != nullptr),
          copies_(state, control, oFirst, control.pName), counter_(state.options.lItemLimit), current_(state),
          pTable_(tableOf(state, control.pBinding->kind)) {}

    void writeRows(host::GisCursorPtr pCursor) {
        const RowRules& rules = *control_.pSecond->rows;
        const std::int64_t lMost = limitOf(state_, rules);
        RowScope scope(state_, pTable_);
        OrderedRows rows(state_, scope, rules, std::move(pCursor), lMost);
        while (const GisRowPtr pRow = rows.next())
            if (!write(pRow))
                break;
    }

    void writeGroups(host::GisCursorPtr pCursor) {
        const RowRules& rules = *control_.pSecond->rows;
        const std::int64_t lMost = limitOf(state_, rules);
        const auto groups = groupRows(state_, pTable_, rules, std::move(pCursor));
        RowScope scope(state_, pTable_);
        for (const RowGroup& rows : groups) {
            if (counter_.value() >= lMost)
                break;
            scope.turnTo(*rows.front());
            const GroupScope group(state_, scope, rows);
            if (!write(rows.front()))
                break;
        }
    }

private:
    /// @returns false where no more are wanted.
    bool write(const GisRowPtr& pRow) {
        const TracedItem item(state_, control_);
        if (!item.isWanted())
            return false;
        const OutputElement& oItem = counter_.value() > 0 ? copies_.next()
                                     : bInsideItem_       ? copies_.firstInItem()
                                                          : copies_.first();
        writeItem(state_, control_, oItem, pRow);
        current_.restore();
        reportItem(state_, control_);
        counter_.increment();
        return true;
    }

    ExportState& state_;
    const ControlNode& control_;
    bool bInsideItem_;
    ItemCopies copies_;
    ItemCounter counter_;
    CurrentAgain current_;
    host::GisTablePtr pTable_;
};

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
    host::GisCursorPtr pCursor = searchRows(state, control);
    SecondItems items(state, control, oFirst);
    if (control.pSecond->rows->group)
        items.writeGroups(std::move(pCursor));
    else
        items.writeRows(std::move(pCursor));
}

} // namespace halvane
