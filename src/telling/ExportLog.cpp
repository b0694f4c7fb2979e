#include "telling/ExportLog.h"

#include "base/Text.h"
#include "engine/control/ClsXMLNode.h"
#include "engine/second/ControlParts.h"
#include "host/DataHost.h"
#include "telling/ControlInheritance.h"
#include "telling/DocumentOrder.h"
#include "telling/Interruption.h"
#include "telling/NameHints.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace halvane {

namespace {

/// Texts that differ with each row must not fill the memory.
constexpr std::size_t nMostTextsOfANode = 10;
constexpr const char* sOtherMessages = "further messages that differ";

/// Below a group a leaf that inherits "Table" looks for a table of its name, and reads no row.
bool isFieldMeant(dom::Node oNode, const ClsXMLNode& node) {
    return !oNode.firstChild() && node.DataSource().empty() && !node.IdentityValue().empty() &&
           inherited(oNode, "DataSource") == "Table" &&
           !equalIgnoringCase(inherited(oNode, "DataProperty"), "TableName");
}

bool sameMessage(const NodeEvent& left, const NodeEvent& right) {
    return left.notice == right.notice && left.lNumber == right.lNumber && left.sText == right.sText;
}

/// @returns the event where it is a new one that will be told as it is; else nullptr.
NodeEvent* count(std::vector<NodeEvent>& events, NodeEvent event) {
    const auto find = [&] {
        return std::find_if(events.begin(), events.end(),
                            [&](const NodeEvent& known) { return sameMessage(known, event); });
    };
    auto pKnown = find();
    const bool bOneOfMany = pKnown == events.end() && events.size() >= nMostTextsOfANode;
    if (bOneOfMany) {
        event.sText = sOtherMessages;
        pKnown = find();
    }
    const bool bNew = pKnown == events.end();
    if (bNew) {
        events.push_back(std::move(event));
        pKnown = std::prev(events.end());
    }
    ++pKnown->lCount;
    return bNew && !bOneOfMany ? &*pKnown : nullptr;
}

} // namespace

ControlNodeFacts factsOf(dom::Node oNode) {
    const ClsXMLNode node(oNode);
    return {oNode.line(),
            std::string(oNode.nodeName()),
            node.TagName(),
            partOf(oNode),
            !(node.DataSource().empty() && node.Identity().empty() && node.IdentityValue().empty() &&
              node.DataFrame().empty() && node.DataLocation().empty()),
            std::string(inherited(oNode, "DataFrame")),
            std::string(inherited(oNode, "DataSource")),
            std::string(inherited(oNode, "Identity")),
            std::string(inherited(oNode, "IdentityValue")),
            std::string(inherited(oNode, "DataLocation")),
            isFieldMeant(oNode, node)};
}

void ExportLog::nodeFailed(dom::Node oControlNode, const Failure& failure) {
    // What fails after the request was ended by it.
    if (!goesOn())
        return;
    ++lFailures_;
    add(oControlNode, {std::nullopt, failure.number(), failure.description()},
        [&](const ControlNodeFacts& /*facts*/) { return failure.context(); });
}

void ExportLog::nodeNoticed(dom::Node oControlNode, Notice notice, std::string_view sDetail,
                            const Surroundings& around) {
    add(oControlNode, {notice, 0, std::string(sDetail)},
        [&](const ControlNodeFacts& facts) { return nameHint(facts, notice, sDetail, around); });
}

bool ExportLog::itemWritten(dom::Node oControlNode) {
    ++lItems_;
    if (oControlNode != oLastItem_)
        withItems_.insert(oControlNode.data());
    oLastItem_ = oControlNode;
    progress_.update(lItems_);
    return goesOn();
}

bool ExportLog::goesOn() {
    // A server that is lost makes something fail.
    if (pServers_ != nullptr && sLostServer_.empty() &&
        std::exchange(lFailuresJudged_, lFailures_) != lFailures_)
        sLostServer_ = pServers_->lostServer();
    bGivenUp_ = !sLostServer_.empty() || endRequested();
    return !bGivenUp_;
}

bool ExportLog::endRequested() {
    return interruptionRequested();
}

void ExportLog::documentSaved(std::string_view sPath, const dom::CharacterRepairs& repairs) {
    bSaved_ = true;
    sSavedPath_ = std::string(sPath);
    repairs_ = repairs;
}

void ExportLog::documentNotDurable(std::string_view sReason) {
    sNotDurableReason_ = std::string(sReason);
}

void ExportLog::documentNotSaved(std::string_view sReason) {
    bSaved_ = false;
    sNotSavedReason_ = std::string(sReason);
}

template<class Hint>
void ExportLog::add(dom::Node oControlNode, const NodeEvent& event, const Hint& hint) {
    try {
        NodeRecord& node = record(oControlNode);
        if (NodeEvent* const pNew = count(node.events, event))
            pNew->sHint = hint(node.facts);
    } catch (const std::exception&) {
        // Out of memory, or a host that fails when it is asked for names. An observer must not throw, and
        // what happened is already counted.
    }
}

NodeRecord& ExportLog::record(dom::Node oControlNode) {
    const std::size_t nPosition = position(oControlNode);
    const auto [pRecord, bNew] = records_.try_emplace(nPosition);
    if (bNew && oControlNode) {
        pRecord->second.facts = factsOf(oControlNode);
        pRecord->second.oNode = oControlNode;
        pRecord->second.nParent = position(oControlNode.parentNode());
    }
    return pRecord->second;
}

std::size_t ExportLog::position(dom::Node oControlNode) {
    if (!oControlNode)
        return 0;
    if (positions_.empty()) {
        const dom::Node oRoot = oControlNode.ownerDocument().documentElement();
        for (dom::Node oNode = oRoot; oNode; oNode = nextInDocument(oNode, oRoot))
            positions_.emplace(oNode.data(), positions_.size() + 1);
    }
    const auto pFound = positions_.find(oControlNode.data());
    return pFound == positions_.end() ? 0 : pFound->second;
}

} // namespace halvane
