#include "engine/second/FollowedRelationship.h"

#include "base/Failure.h"
#include "base/NearestName.h"
#include "base/Text.h"
#include "engine/second/MapThings.h"
#include "host/Relationships.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <string>
#include <utility>

namespace halvane {

namespace {

[[noreturn]] void fail(const std::string& sWhat) {
    throw Failure(FailureNumber::ObjectVariableNotSet, sWhat);
}

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

} // namespace

FollowedRelationship follow(const host::GisMapPtr& pMap, const RowRules& rules, host::GisTable& from) {
    const auto pWorkspace = from.workspace();
    if (pWorkspace == nullptr)
        fail("the row around is of no workspace, which knows relationship classes");
    const auto pClass = classNamed(*pWorkspace, rules.sRelationship);
    const bool bForward = isOfOrigin(rules, *pClass, from.datasetName());
    const auto other = [&](bool bDestination) {
        return tableOfWorkspace(pMap, *pWorkspace,
                                bDestination ? pClass->destinationClassName() : pClass->originClassName());
    };
    FollowedRelationship followed{other(bForward), {}, nullptr, {}};
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
    followed.pLinkTable = tableOfWorkspace(pMap, *pWorkspace, pClass->linkTableName());
    auto toOrigin = linksOf(rules.sRelationship, sOriginForeign, sOriginKey);
    auto toDestination =
        linksOf(rules.sRelationship, pClass->destinationForeignKey(), pClass->destinationPrimaryKey());
    followed.linksToTable = bForward ? std::move(toDestination) : toOrigin;
    for (auto& link : bForward ? toOrigin : toDestination)
        followed.links.push_back({link.sRelated, link.sAround});
    return followed;
}

} // namespace halvane
