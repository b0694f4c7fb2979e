// Which rows a repeated node of the second edition goes over, in which order, and what they write.

#include "base/Text.h"
#include "host/Layers.h"
#include "host/Tables.h"
#include "oracle/Interpreter.h"

#include <algorithm>
#include <cstdlib>

namespace halvane::oracle {

namespace {

std::vector<host::GisRowPtr> rowsOf(const host::GisCursorPtr& pCursor) {
    std::vector<host::GisRowPtr> aRows;
    if (pCursor == nullptr)
        return aRows;
    while (auto pRow = pCursor->nextRow())
        aRows.push_back(std::move(pRow));
    return aRows;
}

/// "a=b, c=d"
std::vector<std::pair<std::string, std::string>> pairsOf(const std::string& sLink) {
    std::vector<std::pair<std::string, std::string>> aPairs;
    for (std::size_t nFrom = 0; nFrom < sLink.size();) {
        const std::size_t nTo = std::min(sLink.find(',', nFrom), sLink.size());
        const std::string sPair = sLink.substr(nFrom, nTo - nFrom);
        const std::size_t nEqual = sPair.find('=');
        aPairs.emplace_back(trimBlanks(sPair.substr(0, nEqual)), trimBlanks(sPair.substr(nEqual + 1)));
        nFrom = nTo + 1;
    }
    return aPairs;
}

/// Null matches nothing, numbers match as numbers, texts exactly, and never each other.
bool match(const SqlValue& left, const SqlValue& right) {
    return !isNull(left) && !isNull(right) && compared(left, right) == 0;
}

std::size_t limitOf(const ControlNode& node) {
    return static_cast<std::size_t>(std::strtoull(node.get("h:Limit").c_str(), nullptr, 10));
}

SqlValue keyOf(const host::GisRow& row, const std::string& sField) {
    const std::int32_t lField = row.fields().findField(sField);
    if (lField >= 0)
        return sqlValueOf(row.value(lField));
    return namesIdentifier(sField) ? SqlValue(row.objectId()) : SqlValue();
}

} // namespace

host::GisTablePtr Interpreter::tableOfRows(const std::string& sKind) const {
    if (sKind == "RelatedTable")
        return pRelatedTable_;
    return sKind == "Table" || sKind == "Record" ? pTable_ : pClass_;
}

Interpreter::Rows Interpreter::relatedRows(Node node, const Attributes& attributes) {
    if (pRelatedTable_ == nullptr)
        return {};
    const std::string& sField = attributes.at("LinkField");
    const Pairs aPairs = node.has("h:Link") ? pairsOf(node.get("h:Link")) : Pairs{{sField, sField}};
    if (aRowLoops_.empty())
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand that rows could be related to; put the node inside a repeated node of rows");
    noteTurn(aPairs.size() > 1 ? "rows related by several keys" : "rows related by a key");
    return matchingRows(*pRelatedTable_, aPairs, *aRowLoops_.back().pRow);
}

/// @param aPairs of fields of the row around and of the table.
Interpreter::Rows Interpreter::matchingRows(host::GisTable& table, const Pairs& aPairs,
                                            const host::GisRow& around) {
    Rows aRows = rowsOf(table.search(nullptr));
    std::erase_if(aRows, [&](const host::GisRowPtr& pRow) {
        return !std::all_of(aPairs.begin(), aPairs.end(), [&](const auto& pair) {
            return match(keyOf(around, pair.first), keyOf(*pRow, pair.second));
        });
    });
    return aRows;
}

/// Nothing where there is no layer or table that they could be of.
std::optional<Interpreter::Rows> Interpreter::rowsToGoOver(Node node, const Attributes& attributes) {
    const std::string& sKind = attributes.at("DataSource");
    const auto pTable = tableOfRows(sKind);
    const bool bRelated = sKind == "RelatedTable";
    if (node.has("h:Relationship"))
        return rowsOfRelationship(node);
    const bool bByKeys = bRelated && (node.has("h:Link") || !attributes.at("LinkField").empty());
    for (auto loop = aRowLoops_.rbegin(); loop != aRowLoops_.rend() && node.has("h:Rows") && !bByKeys; ++loop)
        if (loop->pGroup != nullptr && loop->pTable == pTable &&
            (sKind != "Feature" || loop->pLayer == pLayer_)) {
            noteTurn("the rows of a group");
            return *loop->pGroup;
        }
    if (bRelated && !bByKeys)
        throw Failure(FailureNumber::ObjectVariableNotSet, "no group of rows of this table is at hand");
    if (bRelated)
        return relatedRows(node, attributes);
    if (sKind == "Table" || sKind == "Record")
        return rowsOf(currentRecords());
    return rowsOf(currentFeatures());
}

/// Those for which the condition holds, in their order.
Interpreter::Rows Interpreter::chosenRows(Node node, Rows aRows, const host::GisTablePtr& pTable) {
    InLoop loop(*this, pTable, true);
    if (node.has("h:Where")) {
        const Term condition = readExpression(node.get("h:Where"));
        // Without an order or groups the condition is asked of no row behind the last one that is wanted.
        const bool bEnds = node.has("h:Limit") && !node.has("h:OrderBy") && !node.has("h:Group");
        std::size_t nWanted = bEnds ? limitOf(node) : aRows.size();
        std::erase_if(aRows, [&](const host::GisRowPtr& pRow) {
            if (nWanted == 0)
                return true;
            aRowLoops_.back().pRow = pRow;
            const bool bHolds = isTrue(valueOf(condition));
            noteTurn(bHolds ? "h:Where holds" : "h:Where does not hold");
            nWanted -= bHolds ? 1 : 0;
            return !bHolds;
        });
    }
    if (!node.has("h:OrderBy"))
        return aRows;
    const auto aOrder = readOrder(node.get("h:OrderBy"));
    std::vector<std::pair<std::vector<SqlValue>, host::GisRowPtr>> aKeyed;
    for (const auto& pRow : aRows) {
        aRowLoops_.back().pRow = pRow;
        std::vector<SqlValue> aKeys;
        for (const OrderTerm& order : aOrder)
            aKeys.push_back(valueOf(order.term));
        aKeyed.emplace_back(std::move(aKeys), pRow);
    }
    std::stable_sort(aKeyed.begin(), aKeyed.end(), [&](const auto& left, const auto& right) {
        for (std::size_t n = 0; n < aOrder.size(); ++n) {
            const int nOrder = comparedInOrder(left.first[n], right.first[n]);
            if (nOrder != 0)
                return aOrder[n].bDescending ? nOrder > 0 : nOrder < 0;
        }
        return false;
    });
    if (aKeyed.size() > 1)
        noteTurn("rows in an order");
    std::transform(aKeyed.begin(), aKeyed.end(), aRows.begin(),
                   [](const auto& keyed) { return keyed.second; });
    return aRows;
}

/// In the order in which the values come first.
std::vector<Interpreter::Rows> Interpreter::grouped(Node node, const Rows& aRows,
                                                    const host::GisTablePtr& pTable) {
    InLoop loop(*this, pTable, true);
    const Term term = readExpression(node.get("h:Group"));
    std::vector<std::pair<SqlValue, Rows>> aGroups;
    for (const auto& pRow : aRows) {
        aRowLoops_.back().pRow = pRow;
        const SqlValue value = valueOf(term);
        auto group = std::find_if(aGroups.begin(), aGroups.end(), [&](const auto& known) {
            return comparedInOrder(known.first, value) == 0;
        });
        if (group == aGroups.end())
            group = aGroups.insert(aGroups.end(), {value, {}});
        else
            noteTurn("a group of several rows");
        group->second.push_back(pRow);
    }
    std::vector<Rows> aAll;
    for (auto& [value, aOfGroup] : aGroups)
        aAll.push_back(std::move(aOfGroup));
    return aAll;
}

void Interpreter::repeatSecondRows(const Child& child, OutputNode* pFirst) {
    const Node node = child.node;
    const Current before = current();
    const struct Again {
        Interpreter& interpreter;
        const Current& before;
        ~Again() { interpreter.makeCurrent(before); }
    } again{*this, before};
    const Attributes attributes = merged(node, child.pParent);
    const std::string& sKind = attributes.at("DataSource");
    // A relationship class tells the table, too.
    if (!node.has("h:Relationship"))
        bind(attributes, child.pParent);
    Rows aFound = rowsToGoOver(node, attributes).value_or(Rows());
    const auto pTable = tableOfRows(sKind);
    Rows aRows = chosenRows(node, std::move(aFound), pTable);
    std::vector<Rows> aItems;
    if (node.has("h:Group"))
        aItems = grouped(node, aRows, pTable);
    else
        for (const auto& pRow : aRows)
            aItems.push_back({pRow});
    if (node.has("h:Limit")) {
        const std::size_t nMost = limitOf(node);
        if (nMost < aItems.size())
            noteTurn("a limit of items");
        aItems.resize(std::min(aItems.size(), nMost));
    }
    const Current ofItems = current();
    const bool bInside = !aRowLoops_.empty();
    InLoop loop(*this, pTable, true);
    aRowLoops_.back().pLayer = pLayer_;
    std::int64_t lCounter = 0;
    for (const Rows& aOfItem : aItems) {
        loop.turnTo(aOfItem.front(), node.has("h:Group") ? &aOfItem : nullptr);
        writeSecondItem(node, itemElement(node, pFirst, lCounter == 0), attributes, aOfItem.front());
        makeCurrent(ofItems);
        noteTurn(node.has("h:Group") ? "an item of a group"
                 : bInside           ? "a row of the second edition inside a row"
                                     : "a row of the second edition");
        tellItem(node);
        countItem(lCounter);
    }
}

void Interpreter::writeSecondItem(Node node, OutputNode* pItem, const Attributes& attributes,
                                  const host::GisRowPtr& pRow) {
    if (childrenOf(node).empty()) {
        exportValue(node, pItem, attributes, pRow, pRow);
        return;
    }
    const Attributes down = handedDown(node, attributes);
    forEachChild(node, pItem, attributes, [&](Node inner) {
        exportChild({inner, pItem, &down, pRow, pRow, Place::Walk});
    });
}

} // namespace halvane::oracle
