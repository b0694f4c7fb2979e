// Which rows a repeated node of the second edition goes over, in which order, and what they write.

#include "base/Text.h"
#include "host/Layers.h"
#include "host/Tables.h"
#include "oracle/Interpreter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace halvane::oracle {

namespace {

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

/// A key's value as a clause holds it.
std::string literal(const SqlValue& key) {
    if (const auto* const pText = std::get_if<std::string>(&key))
        return "'" + replaceAll(*pText, "'", "''") + "'";
    if (const auto* const pWhole = std::get_if<std::int64_t>(&key))
        return std::to_string(*pWhole);
    const double dNumber = std::get<double>(key);
    if (dNumber == std::floor(dNumber) && std::abs(dNumber) < 9e15)
        return std::to_string(static_cast<std::int64_t>(dNumber));
    std::array<char, 40> sDigits{};
    return {sDigits.data(), std::to_chars(sDigits.data(), sDigits.data() + sDigits.size(), dNumber).ptr};
}

/// The rows among which those of a key are: the data is asked for numbers in fields of numbers and for texts
/// in fields of texts, and for nothing where the two differ. What it fails for depends on it.
host::GisCursorPtr searchFor(host::GisTable& table, const std::string& sField, const host::GisRow& around,
                             const std::string& sAround) {
    const std::int32_t lField = table.fields()->findField(sField);
    const SqlValue key = keyOf(around, sAround);
    if (isNull(key) || (lField < 0 && !namesIdentifier(sField)))
        return nullptr;
    const std::int32_t lAround = around.fields().findField(sAround);
    const bool bDate = lAround >= 0 && std::holds_alternative<Date>(around.value(lAround));
    const std::int32_t lType = lField < 0 ? -1 : table.fields()->field(lField).typeCode();
    const bool bText = !bDate && std::holds_alternative<std::string>(key);
    const bool bNumbers = (lType >= 0 && lType <= 3) || lType == 6;
    if (!bNumbers && lType != 4)
        return table.search(nullptr);
    if (bDate || bText == bNumbers)
        return nullptr;
    if (bText && std::get<std::string>(key).find('\\') != std::string::npos)
        return table.search(nullptr);
    const host::GisQueryFilter filter{sField + "=" + literal(key)};
    return table.search(&filter);
}

} // namespace

host::GisTablePtr Interpreter::tableOfRows(const std::string& sKind) const {
    if (sKind == "RelatedTable")
        return pRelatedTable_;
    return sKind == "Table" || sKind == "Record" ? pTable_ : pClass_;
}

Interpreter::ReadRows Interpreter::relatedRows(Node node, const Attributes& attributes) {
    const std::string& sField = attributes.at("LinkField");
    const Pairs aPairs = node.has("h:Link") ? pairsOf(node.get("h:Link")) : Pairs{{sField, sField}};
    if (pRelatedTable_ == nullptr)
        return {};
    if (aRowLoops_.empty())
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand that rows could be related to; put the node inside a repeated node of rows");
    noteTurn(aPairs.size() > 1 ? "rows related by several keys" : "rows related by a key");
    return matchingRows(*pRelatedTable_, aPairs, *aRowLoops_.back().pRow);
}

namespace {

/// @param fnTake whether a row is one of them.
template<class ReadRows, class Take>
ReadRows readRows(const host::GisCursorPtr& pCursor, const Take& fnTake) {
    ReadRows found;
    try {
        while (auto pRow = pCursor == nullptr ? nullptr : pCursor->nextRow())
            if (fnTake(*pRow))
                found.rows.push_back(std::move(pRow));
    } catch (const Failure& failure) {
        found.failure = failure;
    }
    return found;
}

template<class ReadRows>
ReadRows readRows(const host::GisCursorPtr& pCursor) {
    return readRows<ReadRows>(pCursor, [](const host::GisRow&) { return true; });
}

} // namespace

/// @param aPairs of fields of the row around and of the table.
Interpreter::ReadRows Interpreter::matchingRows(host::GisTable& table, const Pairs& aPairs,
                                                const host::GisRow& around) {
    const auto pCursor = searchFor(table, aPairs.front().second, around, aPairs.front().first);
    return readRows<ReadRows>(pCursor, [&](const host::GisRow& row) {
        return std::all_of(aPairs.begin(), aPairs.end(), [&](const auto& pair) {
            return match(keyOf(around, pair.first), keyOf(row, pair.second));
        });
    });
}

/// None where there is no layer or table that they could be of.
Interpreter::ReadRows Interpreter::rowsToGoOver(Node node, const Attributes& attributes) {
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
            return {*loop->pGroup};
        }
    if (bRelated && !bByKeys)
        throw Failure(FailureNumber::ObjectVariableNotSet, "no group of rows of this table is at hand");
    if (bRelated)
        return relatedRows(node, attributes);
    if (sKind == "Table" || sKind == "Record")
        return readRows<ReadRows>(currentRecords());
    return readRows<ReadRows>(currentFeatures());
}

/// Those for which the condition holds, in their order. Where they keep the order of the data and are no
/// groups, nothing is asked of a row behind the last one that is wanted.
Interpreter::ReadRows Interpreter::chosenRows(Node node, ReadRows found, const host::GisTablePtr& pTable) {
    InLoop loop(*this, pTable, true);
    const bool bEnds = node.has("h:Limit") && !node.has("h:OrderBy") && !node.has("h:Group");
    const Term condition = node.has("h:Where") ? readExpression(node.get("h:Where")) : Term();
    ReadRows chosen;
    // In an order no row is asked for where none is wanted.
    if (node.has("h:Limit") && !node.has("h:Group") && limitOf(node) == 0)
        return chosen;
    try {
        for (const auto& pRow : found.rows) {
            aRowLoops_.back().pRow = pRow;
            const bool bHolds = !node.has("h:Where") || isTrue(valueOf(condition));
            if (node.has("h:Where"))
                noteTurn(bHolds ? "h:Where holds" : "h:Where does not hold");
            if (bHolds)
                chosen.rows.push_back(pRow);
            if (bEnds && chosen.rows.size() == limitOf(node))
                return chosen;
        }
        chosen.failure = found.failure;
    } catch (const Failure& failure) {
        chosen.failure = failure;
    }
    if (!node.has("h:OrderBy"))
        return chosen;
    if (chosen.failure) {
        noteTurn("rows in an order that fail");
        (void)orderedRows(node, chosen.rows);
        throw Failure(*chosen.failure);
    }
    return {orderedRows(node, chosen.rows)};
}

Interpreter::Rows Interpreter::orderedRows(Node node, const Rows& aRows) {
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
    Rows aOrdered;
    for (auto& [aKeys, pRow] : aKeyed)
        aOrdered.push_back(std::move(pRow));
    return aOrdered;
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
    ReadRows found = rowsToGoOver(node, attributes);
    const auto pTable = tableOfRows(sKind);
    const ReadRows chosen = chosenRows(node, std::move(found), pTable);
    std::vector<Rows> aItems;
    if (node.has("h:Group"))
        aItems = grouped(node, chosen.rows, pTable);
    else
        for (const auto& pRow : chosen.rows)
            aItems.push_back({pRow});
    if (node.has("h:Group") && chosen.failure)
        throw Failure(*chosen.failure);
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
    if (chosen.failure) {
        noteTurn(lCounter > 0 ? "rows that fail behind others" : "rows of which the first one fails");
        throw Failure(*chosen.failure);
    }
}

void Interpreter::writeSecondItem(Node node, OutputNode* pItem, const Attributes& attributes,
                                  const host::GisRowPtr& pRow) {
    if (childrenOf(node).empty()) {
        exportValue(node, pItem, attributes, pRow, pRow);
        return;
    }
    const Attributes down = handedDown(node, attributes);
    const auto fnExport = [&](Node inner) { exportChild({inner, pItem, &down, pRow, pRow, Place::Walk}); };
    forEachChild(node, pItem, attributes, fnExport);
}

} // namespace halvane::oracle
