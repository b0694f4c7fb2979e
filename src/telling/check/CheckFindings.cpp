#include "telling/check/CheckFindings.h"

#include "engine/control/ClsXMLNode.h"
#include "engine/second/ControlParts.h"
#include "telling/DocumentOrder.h"
#include "telling/LogListing.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace halvane {

namespace {

/// The attribute that a message of the second edition begins with: "h:Text" of "h:Text=…".
std::string_view attributeToldOf(std::string_view sText) {
    const std::string_view sName = sText.substr(0, sText.find_first_of(" =\""));
    const std::size_t nColon = sName.find(':');
    if (nColon == std::string_view::npos)
        return {};
    const std::string_view sLocal = sName.substr(nColon + 1);
    return sLocal.substr(0, sLocal.find(':'));
}

} // namespace

std::string message(const CheckFinding& finding) {
    return inOneSentence(finding.explanation);
}

CheckFinding& CheckFindings::addAt(dom::Node oNode, std::string_view sKind, std::string_view sAttribute) {
    CheckFinding& finding = findings_.emplace_back();
    nodes_.push_back(oNode);
    finding.pRule = &checkRule(sKind);
    if (!oNode)
        return finding;
    finding.sPart = partOf(oNode);
    if (!isElement(oNode)) {
        finding.place = {oNode.line(), 0};
        return finding;
    }
    finding.place = places_.of(oNode, sAttribute.empty() ? finding.pRule->sAttribute : sAttribute);
    finding.sElement = oNode.nodeName();
    finding.sName = ClsXMLNode(oNode).TagName();
    return finding;
}

void CheckFindings::add(const ControlProblem& problem) {
    const bool bSecond = problem.sKind == "SecondEdition";
    CheckFinding& finding =
        addAt(problem.oNode, problem.sKind, bSecond ? attributeToldOf(problem.sText) : std::string_view());
    if (!isElement(problem.oNode))
        finding.place = {problem.lLine, problem.lColumn};
    finding.explanation.sWhat = problem.sText;
}

void CheckFindings::add(const Finding& found) {
    CheckFinding& finding = addAt(found.oNode, found.sKind, found.sAttribute);
    finding.sDetail = found.sDetail;
    finding.explanation = {found.sText, found.sRemedy};
}

void CheckFindings::add(const ExportLog& log, const std::vector<Finding>& findings,
                        const Remedies& remedies) {
    for (const ToldEvent& event : toldEvents(log, findings, Telling::NodesOnce)) {
        const NodeRecord& record = *event.pRecord;
        if (event.pEvent->notice == Notice::FieldNotFound && has(record.oNode, "RowsLackField"))
            continue; // an export would have been refused for it
        if (!event.pEvent->notice && has(record.oNode, "RelationshipNotFollowed"))
            continue; // likewise
        add(record.facts, record.oNode, *event.pEvent, remedies);
        Explanation& told = findings_.back().explanation;
        (told.sRemedy.empty() ? told.sWhat : told.sRemedy) += additions(event);
    }
}

void CheckFindings::add(const ControlNodeFacts& facts, dom::Node oNode, const NodeEvent& event,
                        const Remedies& remedies) {
    CheckFinding& finding = addAt(oNode, event.notice ? nameOf(*event.notice) : std::string_view(), {});
    finding.sDetail = event.sText;
    finding.explanation = explained(facts, event, remedies);
}

bool CheckFindings::has(dom::Node oElement, std::string_view sKind) const {
    for (std::size_t n = 0; n < nodes_.size(); ++n)
        if (nodes_[n] == oElement && findings_[n].pRule->sKind == sKind)
            return true;
    return false;
}

void CheckFindings::addOfFile(std::string_view sKind, std::string sText) {
    addAt({}, sKind, {}).explanation.sWhat = std::move(sText);
}

std::vector<CheckFinding> CheckFindings::take() {
    std::unordered_map<const dom::NodeData*, std::size_t> positions;
    for (dom::Node oNode = oRoot_; oNode; oNode = nextInDocument(oNode, oRoot_))
        positions.emplace(oNode.data(), positions.size() + 1);
    const auto position = [&](std::size_t n) { return nodes_[n] ? positions[nodes_[n].data()] : 0; };
    std::vector<std::size_t> order(findings_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, position);
    std::vector<CheckFinding> sorted;
    sorted.reserve(order.size());
    for (const std::size_t n : order)
        sorted.push_back(std::move(findings_[n]));
    findings_.clear();
    nodes_.clear();
    return sorted;
}

} // namespace halvane
