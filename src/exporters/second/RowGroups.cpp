#include "exporters/second/RowGroups.h"

#include "engine/second/GroupScope.h"
#include "exporters/second/OrderedRows.h"
#include "expression/Ordering.h"

#include <limits>
#include <map>
#include <utility>

namespace halvane {

namespace {

struct InOrder {
    bool operator()(const Value& left, const Value& right) const {
        return expression::compareValues(left, right) < 0;
    }
};

/// Rows that are held already.
class RowsOfGroup final : public host::GisCursor {
public:
    explicit RowsOfGroup(const RowGroup& rows) : rows_(rows) {}

    [[nodiscard]] host::GisRowPtr nextRow() override {
        return nNext_ == rows_.size() ? nullptr : rows_[nNext_++];
    }

private:
    const RowGroup& rows_;
    std::size_t nNext_ = 0;
};

} // namespace

std::vector<RowGroup> groupRows(ExportState& state, const host::GisTablePtr& pTable, const RowRules& rules,
                                host::GisCursorPtr pCursor) {
    RowScope scope(state, pTable);
    OrderedRows rows(state, scope, rules, std::move(pCursor), std::numeric_limits<std::int64_t>::max());
    std::vector<RowGroup> groups;
    std::map<Value, std::size_t, InOrder> places;
    while (auto pRow = rows.next()) {
        const auto place = places.try_emplace(rules.group->computed(state), groups.size());
        if (place.second)
            groups.emplace_back();
        groups[place.first->second].push_back(std::move(pRow));
    }
    return groups;
}

host::GisCursorPtr searchGroup(const ExportState& state, const host::GisTablePtr& pTable) {
    // Layers may share a class, each with rows of its own.
    const bool bOfLayer = pTable == state.pFeatureClass;
    for (const GroupScope* pGroup = state.pGroup; pGroup != nullptr; pGroup = pGroup->around())
        if (pGroup->loop().table() == pTable && (!bOfLayer || pGroup->layer() == state.pFeatureLayer))
            return std::make_shared<RowsOfGroup>(pGroup->rows());
    return nullptr;
}

} // namespace halvane
