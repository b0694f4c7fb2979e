// Rows that a relationship class relates: found by its definition, followed from the side of the row around.

#include "base/Text.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "oracle/Interpreter.h"

#include <algorithm>

namespace halvane::oracle {

namespace {

[[noreturn]] void fail(const std::string& sWhat) {
    throw Failure(FailureNumber::ObjectVariableNotSet, sWhat);
}

std::vector<std::string> namesIn(const std::string& sList) {
    std::vector<std::string> aNames;
    for (std::size_t nFrom = 0; nFrom <= sList.size();) {
        const std::size_t nTo = std::min(sList.find(',', nFrom), sList.size());
        aNames.emplace_back(trimBlanks(sList.substr(nFrom, nTo - nFrom)));
        nFrom = nTo + 1;
    }
    return aNames;
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

/// Keys of several fields stand in one text, separated by commas.
Pairs pairsOf(const std::string& sClass, const std::string& sKey, const std::string& sForeignKey) {
    const auto aKeys = namesIn(sKey);
    const auto aForeign = namesIn(sForeignKey);
    if (sKey.empty() || sForeignKey.empty() || aKeys.size() != aForeign.size())
        fail("the relationship class \"" + sClass + "\" does not tell which fields relate its rows");
    Pairs aPairs;
    for (std::size_t n = 0; n < aKeys.size(); ++n)
        aPairs.emplace_back(aKeys[n], aForeign[n]);
    return aPairs;
}

Pairs turned(const Pairs& aPairs) {
    Pairs aTurned;
    for (const auto& [sLeft, sRight] : aPairs)
        aTurned.emplace_back(sRight, sLeft);
    return aTurned;
}

bool equalNames(const std::string& sLeft, const std::string& sRight) {
    return upperCase(sLeft) == upperCase(sRight);
}

host::GisRelationshipClassPtr classNamed(host::GisWorkspace& workspace, const std::string& sName) {
    const auto pClasses = workspace.relationshipClasses();
    while (auto pClass = pClasses == nullptr ? nullptr : pClasses->next())
        if (equalNames(pClass->name(), sName))
            return pClass;
    fail("the data of the row around knows no relationship class \"" + sName + "\"");
}

/// From the origin to the destination. @param sDirection "" for either.
bool isForward(const host::GisRelationshipClass& relationship, const std::string& sName,
               const std::string& sTable, const std::string& sDirection) {
    const bool bOrigin = equalNames(relationship.originClassName(), sTable);
    const bool bDestination = equalNames(relationship.destinationClassName(), sTable);
    if (!bOrigin && !bDestination)
        fail("the relationship class \"" + sName + "\" relates \"" + relationship.originClassName() +
             "\" and \"" + relationship.destinationClassName() + "\"; the row around is of \"" + sTable +
             "\"");
    if (bOrigin && bDestination && sDirection.empty())
        fail("the relationship class \"" + sName +
             "\" relates a table with itself; add h:Direction=\"Forward\" or \"Backward\"");
    return bOrigin && bDestination ? sDirection == "Forward" : bOrigin;
}

} // namespace

/// That of the map, of its tables before its layers; else of the workspace itself.
host::GisTablePtr Interpreter::tableOfData(host::GisWorkspace& workspace, const std::string& sName) const {
    std::vector<host::GisTablePtr> aTables;
    for (const Thing& table : tablesOfMap())
        aTables.push_back(std::dynamic_pointer_cast<host::GisTable>(table.pObject));
    for (const Thing& layer : layersOfMap()) {
        const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(layer.pObject);
        try {
            if (pLayer != nullptr && pLayer->featureClass() != nullptr)
                aTables.push_back(pLayer->featureClass());
        } catch (const Failure&) {
            continue; // what cannot be opened is not it
        }
    }
    for (const auto& pTable : aTables)
        if (equalNames(pTable->datasetName(), sName) && pTable->workspace() != nullptr &&
            pTable->workspace()->pathName() == workspace.pathName())
            return pTable;
    return workspace.openTable(sName);
}

Interpreter::ReadRows Interpreter::rowsOfRelationship(Node node) {
    const std::string sName(trimBlanks(node.get("h:Relationship")));
    const auto pFrom = rowAtHand() == nullptr ? nullptr : aRowLoops_.back().pTable;
    if (pFrom == nullptr)
        fail("no row of a table is at hand that rows could be related to; put the node inside a repeated "
             "node of rows");
    const auto pWorkspace = pFrom->workspace();
    if (pWorkspace == nullptr)
        fail("the row around is of no workspace, which knows relationship classes");
    const auto pClass = classNamed(*pWorkspace, sName);
    const bool bForward = isForward(*pClass, sName, pFrom->datasetName(), node.get("h:Direction"));
    const auto pTo =
        tableOfData(*pWorkspace, bForward ? pClass->destinationClassName() : pClass->originClassName());
    const std::string sLinkTable = pClass->linkTableName();
    ReadRows found;
    if (pClass->cardinality() != 3 && sLinkTable.empty()) {
        const Pairs aPairs = pairsOf(sName, pClass->originPrimaryKey(), pClass->originForeignKey());
        found = matchingRows(*pTo, bForward ? aPairs : turned(aPairs), *rowAtHand());
        noteTurn("rows related by a class");
    } else {
        if (sLinkTable.empty())
            fail("the table that holds the links of \"" + sName + "\" is not available from this data");
        const auto pLinks = tableOfData(*pWorkspace, sLinkTable);
        // Of a row and a row of links.
        const Pairs aOfOrigin = pairsOf(sName, pClass->originPrimaryKey(), pClass->originForeignKey());
        const Pairs aOfDestination =
            pairsOf(sName, pClass->destinationPrimaryKey(), pClass->destinationForeignKey());
        const ReadRows links = matchingRows(*pLinks, bForward ? aOfOrigin : aOfDestination, *rowAtHand());
        found.failure = links.failure;
        for (std::size_t n = 0; n < links.rows.size(); ++n) {
            ReadRows ofLink;
            try {
                ofLink = matchingRows(*pTo, turned(bForward ? aOfDestination : aOfOrigin), *links.rows[n]);
            } catch (const Failure& failure) {
                ofLink.failure = failure;
            }
            found.rows.insert(found.rows.end(), ofLink.rows.begin(), ofLink.rows.end());
            if (ofLink.failure) {
                found.failure = ofLink.failure;
                break;
            }
        }
        noteTurn("rows related by a class with a table of links");
    }
    if (!found.rows.empty())
        noteTurn(bForward ? "a related row of a destination" : "a related row of an origin");
    pRelatedTable_ = pTo;
    return found;
}

} // namespace halvane::oracle
