#include "exporters/second/RelationshipRows.h"

#include "engine/second/FollowedRelationship.h"
#include "engine/second/RowScope.h"
#include "exporters/second/LinkedRows.h"
#include "host/Tables.h"

namespace halvane {

/// A relationship class as it was followed last.
struct KeptRelationship {
    const host::GisTable* pFrom = nullptr;
    std::uint64_t nGeneration = 0;
    FollowedRelationship followed;
};

namespace {

/// Rows of one table that rows of another lead to.
class RowsThroughLinks final : public host::GisCursor {
public:
    RowsThroughLinks(ExportState& state, FollowedRelationship& followed, const host::GisRow& around)
        : state_(state), followed_(followed), linkRows_(state, *followed.pLinkTable, followed.links, around) {
    }

    [[nodiscard]] host::GisRowPtr nextRow() override {
        for (;;) {
            if (auto pRow = pRows_ == nullptr ? nullptr : pRows_->nextRow())
                return pRow;
            pRows_.reset();
            pLinkRow_ = linkRows_.nextRow();
            if (pLinkRow_ == nullptr)
                return nullptr;
            pRows_ =
                std::make_unique<LinkedRows>(state_, *followed_.pTable, followed_.linksToTable, *pLinkRow_);
        }
    }

private:
    ExportState& state_;
    FollowedRelationship& followed_;
    LinkedRows linkRows_;
    host::GisRowPtr pLinkRow_;
    std::unique_ptr<LinkedRows> pRows_;
};

} // namespace

host::GisCursorPtr searchRelationship(ExportState& state, const RowRules& rules) {
    if (state.pRowScope == nullptr || state.pRowScope->row() == nullptr ||
        state.pRowScope->table() == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "no row of a table is at hand that rows could be related to; put the node inside a "
                      "repeated node of rows");
    host::GisTable& from = *state.pRowScope->table();
    if (rules.pFollowed == nullptr || rules.pFollowed->pFrom != &from ||
        rules.pFollowed->nGeneration != state.nGeneration)
        rules.pFollowed = std::make_shared<KeptRelationship>(
            KeptRelationship{&from, state.nGeneration, follow(state.pMap, rules, from)});
    FollowedRelationship& followed = rules.pFollowed->followed;
    state.pRelatedTable = followed.pTable;
    if (followed.pLinkTable != nullptr)
        return std::make_shared<RowsThroughLinks>(state, followed, *state.pRowScope->row());
    return std::make_shared<LinkedRows>(state, *followed.pTable, followed.links, *state.pRowScope->row());
}

} // namespace halvane
