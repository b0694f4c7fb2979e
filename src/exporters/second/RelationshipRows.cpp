#include "exporters/second/RelationshipRows.h"

#include "base/NearestName.h"
#include "base/Text.h"
#include "engine/second/RowScope.h"
#include "exporters/second/LinkedRows.h"
#include "exporters/second/MapThings.h"
#include "host/Relationships.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <utility>

namespace halvane {

/// A relationship class as it is followed from the rows of one table.
struct FollowedRelationship {
    const host::GisTable* pFrom = nullptr;
    std::uint64_t nGeneration = 0;
    host::GisTablePtr pTable; ///< whose rows are related
    std::vector<RowRules::Link> links;
    host::GisTablePtr pLinkTable; ///< nothing: the links lead to the related row
    std::vector<RowRules::Link> linksToTable;
};

namespace {

[[noreturn]] void fail(const std::string& sWhat) {
    throw Failure(FailureNumber::ObjectVariableNotSet, sWhat);
}

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

/// Keys of several fields stand in one text, separated by commas.
std::vector<RowRules::Link> linksOf(const std::string& sName, const std::string& sAround,
                                    const std::string& sRelated) {
    std::vector<std::string> around;
    std::vector<std::string> related;
    (void)Split(sAround, ",", around);
    (void)Split(sRelated, ",", related);
    if (sAround.empty() || sRelated.empty() || around.size() != related.size())
        fail("the relationship class \"" + sName + "\" does not tell which fields relate its rows");
    std::vector<RowRules::Link> links;
    for (std::size_t n = 0; n < around.size(); ++n)
        links.push_back({std::string(trimBlanks(around[n])), std::string(trimBlanks(related[n]))});
    return links;
}

host::GisRelationshipClassPtr classNamed(host::GisWorkspace& workspace, const std::string& sName) {
    NearestName nearest(sName);
    const auto pClasses = workspace.relationshipClasses();
    while (auto pClass = pClasses == nullptr ? nullptr : pClasses->next()) {
        const std::string sKnown = pClass->name();
        if (equalIgnoringCase(sKnown, sName))
            return pClass;
        nearest.offer(sKnown);
    }
    fail("the data of the row around knows no relationship class \"" + sName + "\"" + nearest.question("; "));
}

/// Whether the row around is of the origin. @throws Failure when it is of neither side, or may be of both.
bool isOfOrigin(const RowRules& rules, const host::GisRelationshipClass& relationship,
                const std::string& sTable) {
    const bool bOrigin = equalIgnoringCase(relationship.originClassName(), sTable);
    const bool bDestination = equalIgnoringCase(relationship.destinationClassName(), sTable);
    if (!bOrigin && !bDestination)
        fail("the relationship class \"" + rules.sRelationship + "\" relates \"" +
             relationship.originClassName() + "\" and \"" + relationship.destinationClassName() +
             "\"; the row around is of \"" + sTable + "\"");
    if (bOrigin && bDestination && rules.direction == RowRules::Direction::Either)
        fail("the relationship class \"" + rules.sRelationship +
             "\" relates a table with itself; add h:Direction=\"Forward\" or \"Backward\"");
    return bOrigin && (!bDestination || rules.direction == RowRules::Direction::Forward);
}

FollowedRelationship follow(const ExportState& state, const RowRules& rules, host::GisTable& from) {
    const auto pWorkspace = from.workspace();
    if (pWorkspace == nullptr)
        fail("the row around is of no workspace, which knows relationship classes");
    const auto pClass = classNamed(*pWorkspace, rules.sRelationship);
    const bool bForward = isOfOrigin(rules, *pClass, from.datasetName());
    const auto other = [&](bool bDestination) {
        return tableOfWorkspace(state, *pWorkspace,
                                bDestination ? pClass->destinationClassName() : pClass->originClassName());
    };
    FollowedRelationship followed{&from, state.nGeneration, other(bForward), {}, nullptr, {}};
    const std::string sOriginKey = pClass->originPrimaryKey();
    const std::string sOriginForeign = pClass->originForeignKey();
    constexpr std::int32_t lManyToMany = 3;
    if (pClass->cardinality() != lManyToMany && pClass->linkTableName().empty()) {
        followed.links = linksOf(rules.sRelationship, bForward ? sOriginKey : sOriginForeign,
                                 bForward ? sOriginForeign : sOriginKey);
        return followed;
    }
    if (pClass->linkTableName().empty())
        fail("the table that holds the links of \"" + rules.sRelationship +
             "\" is not available from this data");
    followed.pLinkTable = tableOfWorkspace(state, *pWorkspace, pClass->linkTableName());
    auto toOrigin = linksOf(rules.sRelationship, sOriginForeign, sOriginKey);
    auto toDestination =
        linksOf(rules.sRelationship, pClass->destinationForeignKey(), pClass->destinationPrimaryKey());
    followed.linksToTable = bForward ? std::move(toDestination) : toOrigin;
    for (auto& link : bForward ? toOrigin : toDestination)
        followed.links.push_back({link.sRelated, link.sAround});
    return followed;
}

} // namespace

host::GisCursorPtr searchRelationship(ExportState& state, const RowRules& rules) {
    if (state.pRowScope == nullptr || state.pRowScope->row() == nullptr ||
        state.pRowScope->table() == nullptr)
        fail("no row of a table is at hand that rows could be related to; put the node inside a repeated "
             "node of "
             "rows");
    host::GisTable& from = *state.pRowScope->table();
    if (rules.pFollowed == nullptr || rules.pFollowed->pFrom != &from ||
        rules.pFollowed->nGeneration != state.nGeneration)
        rules.pFollowed = std::make_shared<FollowedRelationship>(follow(state, rules, from));
    FollowedRelationship& followed = *rules.pFollowed;
    state.pRelatedTable = followed.pTable;
    if (followed.pLinkTable != nullptr)
        return std::make_shared<RowsThroughLinks>(state, followed, *state.pRowScope->row());
    return std::make_shared<LinkedRows>(state, *followed.pTable, followed.links, *state.pRowScope->row());
}

} // namespace halvane
