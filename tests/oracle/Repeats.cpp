// Repeated nodes.

#include "base/Text.h"
#include "host/Layers.h"
#include "host/Tables.h"
#include "oracle/Interpreter.h"

#include <set>

namespace halvane::oracle {

host::GisCursorPtr Interpreter::currentFeatures() const {
    if (pLayer_ == nullptr || pClass_ == nullptr)
        return nullptr;
    return pLayer_->selectionCount() < 1 ? pClass_->search(nullptr) : pLayer_->searchSelection();
}

host::GisCursorPtr Interpreter::currentRecords() const {
    return pTable_ == nullptr ? nullptr : pTable_->search(nullptr);
}

/// The element of a second or later item.
OutputNode* Interpreter::anotherItem(Node repeatedNode, OutputNode* pFirst, const std::string& sName) {
    if (omits(repeatedNode, "Self"))
        return pFirst;
    noteTurn("a further item");
    OutputNode* const pItem = newItemElement(repeatedNode, sName);
    if (pItem != nullptr)
        pItem->bHeld = omits(repeatedNode, "Empty");
    return tree_.append(pFirst->pParent, pItem);
}

void Interpreter::exportMultiple(Node node, OutputNode* pOut, const Attributes& attributes,
                                 const host::GisRowPtr& pRow, const host::GisRowPtr& pRecord,
                                 const Attributes* pParentAttributes) {
    procedure(node, [&] {
        const std::string& sKind = attributes.at("DataSource");
        static const std::set<std::string> bound{"Map",       "FeatureLayer", "MapLayer",     "Feature",
                                                 "Workspace", "FeatureTable", "TinWorkspace", "Table",
                                                 "TinLayer",  "RelatedTable"};
        if (bound.count(sKind) != 0)
            keep(sKind, resolve(attributes));
        const Repeat repeat{node, pOut, attributes, pRow, pRecord, pParentAttributes};
        if (childrenOf(node).empty())
            repeatLeaf(repeat);
        else
            repeatGroup(repeat);
    });
}

/// The element of the row at hand; an attribute is of one that its value may reveal.
void Interpreter::revealItem(const Repeat& repeat) {
    if (!repeat.node.targetsAttribute())
        itemElement(repeat.node, repeat.pOut, true);
}

void Interpreter::repeatLeaf(const Repeat& repeat) {
    const std::string& sKind = repeat.attributes.at("DataSource");
    const bool bFeature = sKind == "FeatureTable" || sKind == "Feature";
    const bool bRecord = sKind == "Record" || sKind == "Table";
    if (!bFeature && !bRecord)
        return;
    if (bFeature && repeat.attributes.at("Identity") != "FieldName" && !hasText(repeat.node))
        return;
    const bool bOfRow = bFeature ? repeat.pRow != nullptr : repeat.pRecord != nullptr;
    if (bOfRow)
        revealItem(repeat);
    if (bFeature && repeat.pRow != nullptr) {
        exportValue(repeat.node, repeat.pOut, repeat.attributes, repeat.pRow, nullptr);
        return;
    }
    if (bRecord && repeat.pRecord != nullptr) {
        exportValue(repeat.node, repeat.pOut, repeat.attributes, repeat.pRecord, repeat.pRecord);
        return;
    }
    const auto pCursor = bFeature ? currentFeatures() : currentRecords();
    if (pCursor == nullptr)
        return;
    std::int64_t lCounter = 0;
    InLoop loop(*this, tableOfRows(sKind), false);
    while (const auto pRow = pCursor->nextRow()) {
        loop.turnTo(pRow);
        OutputNode* const pItem = itemElement(repeat.node, repeat.pOut, lCounter == 0);
        exportValue(repeat.node, pItem, repeat.attributes, pRow, bFeature ? nullptr : pRow);
        tellItem(repeat.node);
        countItem(lCounter);
    }
}

void Interpreter::repeatGroup(const Repeat& repeat) {
    const std::string& sKind = repeat.attributes.at("DataSource");
    if (upperCase(sKind).find("GEOMETRY") != std::string::npos) {
        exportGeometry(repeat.node, repeat.pOut, repeat.attributes, repeat.pRow);
    } else if (sKind == "WorkspaceDomain") {
        exportDomains(repeat.node, repeat.pOut, repeat.attributes);
    } else if (sKind == "Relationship") {
        exportRelationships(repeat.node, repeat.pOut, repeat.attributes);
    } else if (sKind == "SubType" && pClass_ != nullptr) {
        SubtypeState shared;
        exportSubtypes(pClass_, pClass_->subtypes(), repeat.node, repeat.pOut, repeat.attributes, shared);
    } else if (sKind == "Field" && pClass_ != nullptr) {
        exportFields(pClass_, repeat.node, repeat.pOut);
    } else if (sKind == "RelatedTable") {
        repeatRelated(repeat);
    } else if (sKind == "Feature" && repeat.pRow != nullptr) {
        // The row is written as the first edition writes it.
        const LoopsAgain again(aRowLoops_);
        if (!aRowLoops_.empty())
            aRowLoops_.back().bSecond = false;
        revealItem(repeat);
        writeRow(repeat, repeat.pOut, repeat.pRow, true);
    } else if (sKind == "Feature") {
        repeatRows(repeat, currentFeatures(), true);
    } else if (sKind == "Record" || sKind == "Table") {
        repeatRows(repeat, currentRecords(), false);
    }
}

/// That of the node itself, also where it is not handed down.
std::string Interpreter::kindOf(const Attributes& attributes) {
    const auto own = attributes.find("OwnKind");
    return own == attributes.end() ? attributes.at("DataSource") : own->second;
}

/// When a related row exists the node is walked again, with itself as its parent.
void Interpreter::repeatRelated(const Repeat& repeat) {
    const std::string sParentKind =
        repeat.pParentAttributes == nullptr ? "" : kindOf(*repeat.pParentAttributes);
    if ((sParentKind != "FeatureTable" && sParentKind != "Feature") || repeat.pRow == nullptr)
        return;
    const std::string& sLink = repeat.attributes.at("LinkField");
    const std::int32_t lLink = repeat.pRow->fields().findField(sLink);
    if (sLink.empty() || lLink < 0 || pRelatedTable_ == nullptr)
        return;
    const host::GisQueryFilter filter{sLink + " = " + toText(repeat.pRow->value(lLink))};
    const auto pCursor = pRelatedTable_->search(&filter);
    if (pCursor->nextRow() == nullptr)
        return;
    noteTurn("a repeated related table");
    walk(repeat.node, repeat.pOut, &repeat.attributes, nullptr, nullptr, true);
}

void Interpreter::repeatRows(const Repeat& repeat, const host::GisCursorPtr& pCursor, bool bFeatures) {
    if (pCursor == nullptr)
        return;
    std::int64_t lCounter = 0;
    InLoop loop(*this, tableOfRows(bFeatures ? "Feature" : "Record"), false);
    while (const auto pRow = pCursor->nextRow()) {
        loop.turnTo(pRow);
        OutputNode* const pItem = itemElement(repeat.node, repeat.pOut, lCounter == 0);
        writeRow(repeat, pItem, pRow, bFeatures);
        tellItem(repeat.node);
        countItem(lCounter);
    }
}

/// The children of one row. A feature's children may be repeated again, a record's not. A record's row is
/// handed on as record too.
void Interpreter::writeRow(const Repeat& repeat, OutputNode* pItem, const host::GisRowPtr& pRow,
                           bool bFeature) {
    const host::GisRowPtr pRecord = bFeature ? nullptr : pRow;
    const Attributes down = handedDown(repeat.node, repeat.attributes);
    forEachChild(repeat.node, pItem, repeat.attributes, [&](Node child) {
        exportChild({child, pItem, &down, pRow, pRecord, bFeature ? Place::Feature : Place::Record});
    });
}

} // namespace halvane::oracle
