#include "run/preview/PreviewTrace.h"

#include "engine/ExportState.h"
#include "engine/second/ControlParts.h"
#include "engine/second/SecondControl.h"
#include "engine/second/SecondNode.h"
#include "run/preview/PreviewReasons.h"
#include "telling/DocumentOrder.h"
#include "telling/Messages.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace halvane {

namespace {

/// A preview that lacks memory for a reason is one without it: a trace must not throw.
template<class Body>
void guarded(const Body& body) noexcept {
    try {
        body();
    } catch (...) { // NOLINT(bugprone-empty-catch)
    }
}

std::string placeOf(dom::Node oControlNode) {
    const std::string sLine = std::to_string(oControlNode.line());
    const std::string sPart = partOf(oControlNode);
    return sPart.empty() ? sLine : std::filesystem::path(sPart).filename().string() + ":" + sLine;
}

/// Items whose condition does not hold are none of the first ones, as long as they are no endless list.
constexpr std::uint64_t nMostSkipped = 1000;
constexpr const char* sNoItems = "there are no items";
constexpr const char* sEmpty = "the value is empty";

/// What was told of it, and that a field is null, says enough.
bool isEmptyExplained(const std::vector<std::string>& reasons) {
    return reasons.size() > 1 || (reasons.size() == 1 && reasons.front().ends_with(sOfNull));
}

void addOnce(std::vector<std::string>& texts, std::string sText) {
    if (!sText.empty() && std::find(texts.begin(), texts.end(), sText) == texts.end())
        texts.push_back(std::move(sText));
}

} // namespace

// ---- Steps ----

void PreviewTrace::nodeBegins(const ExportState& state, const ControlNode& control) {
    guarded([&] {
        if (!steps_.empty() && steps_.back().pControl == &control)
            ++steps_.back().nInside;
        else
            begin(state, control, false);
    });
}

void PreviewTrace::nodeEnds(const ExportState& state, const ControlNode& /*control*/) {
    guarded([&] {
        if (steps_.back().nInside > 0)
            --steps_.back().nInside;
        else
            end(state);
    });
}

bool PreviewTrace::itemBegins(const ExportState& state, const ControlNode& repeated) {
    Step& loop = steps_.back();
    if (loop.nItems - loop.nSkipped >= nItems_) {
        if (!loop.bCut)
            guarded([&] {
                takeNew(state);
                remark(repeated, moreOf(repeated), aroundItems(loop), true);
            });
        loop.bCut = true;
        return false;
    }
    ++loop.nItems;
    loop.bWithItems = true;
    guarded([&] { begin(state, repeated, true); });
    return true;
}

void PreviewTrace::itemEnds(const ExportState& state, const ControlNode& /*repeated*/) {
    guarded([&] { end(state); });
}

std::string PreviewTrace::moreOf(const ControlNode& repeated) const {
    const std::string sName = inQuotes(repeated.sTagName);
    return nItems_ == 1 ? fmt::format("… more: only the first item of {} is shown", sName)
                        : fmt::format("… more: only the first {} items of {} are shown", nItems_, sName);
}

void PreviewTrace::begin(const ExportState& state, const ControlNode& control, bool bItem) {
    if (!steps_.empty())
        explain(state, steps_.back());
    Step step{.pControl = &control, .bItem = bItem};
    if (bItem) {
        const Step& loop = steps_.back();
        step.nNumber = loop.nItems;
        const bool bMadeForItem =
            !loop.bItem && (control.bRepeated || control.pSecond != nullptr || !control.hasChildren());
        if (step.nNumber == 1 && bMadeForItem)
            step.pElement = loop.pElement; // the walker made it before it knew of items
    }
    steps_.push_back(std::move(step));
    takeNew(state);
}

void PreviewTrace::end(const ExportState& state) {
    takeNew(state);
    explain(state, steps_.back());
    Step step = std::move(steps_.back());
    steps_.pop_back();
    step.pAround = elementAround().data();
    if (step.bItem) {
        Step& loop = steps_.back();
        loop.pLastItem = step.pElement;
        if (loop.pElement == nullptr)
            loop.pElement = step.pElement; // for what the node says of itself
    }
    close(std::move(step));
}

void PreviewTrace::close(Step step) {
    const ControlNode& control = *step.pControl;
    if (control.bTargetsAttribute && !step.bItem)
        closeAttribute(step);
    else if (step.pElement != nullptr)
        closeElement(step);
    else if (!step.sWhyNothing.empty() || !(step.bWithItems || step.bItem || isDissolved(control)))
        remark(control, whyNothing(step), step.pAround, false);
    else if (!control.hasChildren())
        for (const auto& sReason : step.reasons)
            remark(control, fmt::format("{}: {}", control.sTagName, sReason), step.pAround, false);
}

void PreviewTrace::closeAttribute(Step& step) {
    const ControlNode& control = *step.pControl;
    const auto sValue = dom::Node(step.pAround).getAttribute(control.sTagName);
    if (!sValue) {
        remark(control, whyNothing(step), step.pAround, false);
        return;
    }
    if (sValue->empty() && !isEmptyExplained(step.reasons))
        step.reasons.emplace_back(sEmpty);
    auto& reasons = elements_[step.pAround].element.reasons;
    for (const auto& sReason : step.reasons)
        addOnce(reasons, fmt::format("@{} (line {}): {}", control.sTagName, placeOf(control.oNode), sReason));
}

void PreviewTrace::closeElement(Step& step) {
    const ControlNode& control = *step.pControl;
    const dom::Node oElement(step.pElement);
    const bool bEmpty = !oElement.hasChildNodes();
    if (bEmpty && control.bRepeated && !step.bItem && !step.bWithItems && control.hasChildren())
        step.reasons.emplace_back(sNoItems);
    else if (bEmpty && !control.hasChildren() && !step.bWithItems && !isEmptyExplained(step.reasons))
        step.reasons.emplace_back(sEmpty);
    // What a node says of itself stands before what its items and attributes say.
    auto& reasons = elements_[step.pElement].element.reasons;
    std::swap(reasons, step.reasons);
    for (auto& sReason : step.reasons)
        addOnce(reasons, std::move(sReason));
}

std::string PreviewTrace::whyNothing(const Step& step) const {
    const ControlNode& control = *step.pControl;
    std::string sWhy = step.sWhyNothing;
    if (sWhy.empty() && control.pSecond != nullptr && control.pSecond->omit == Omit::Empty)
        sWhy = "it is empty, and such is left out";
    if (sWhy.empty() && (control.bRepeated || (control.pSecond != nullptr && control.pSecond->rows)))
        sWhy = sNoItems;
    std::string sText = fmt::format("{}: nothing was written", control.sTagName);
    if (!sWhy.empty())
        sText += ": " + sWhy;
    for (const auto& sReason : step.reasons)
        if (sReason != sWhy)
            sText += "; " + sReason;
    return sText;
}

void PreviewTrace::explain(const ExportState& state, Step& step) {
    if (step.bExplained || !bExplains_)
        return;
    step.bExplained = true;
    std::vector<std::string> reasons;
    if (step.bItem)
        reasons.push_back(fmt::format("item {}{}", step.nNumber, itemAtHand(state, *step.pControl)));
    if (!step.bItem)
        for (auto& sReason : reasonsOfNode(state, *step.pControl, !step.bFoundNothing))
            reasons.push_back(std::move(sReason));
    if (!step.pControl->hasChildren() && !step.bWithItems)
        reasons.push_back(reasonOfLeaf(state, *step.pControl));
    // What was told meanwhile comes behind what it is about.
    for (auto& sTold : step.reasons)
        reasons.push_back(std::move(sTold));
    step.reasons.clear();
    for (auto& sReason : reasons)
        addOnce(step.reasons, std::move(sReason));
}

// ---- What is told ----

void PreviewTrace::conditionFails(const ExportState& /*state*/, const ControlNode& control) {
    guarded([&] {
        const auto sWhen = secondAttribute(control.oNode, "When");
        Step& step = steps_.back();
        step.sWhyNothing = fmt::format("the condition {} is not true", inQuotes(sWhen.value_or("")));
        if (step.bItem && std::prev(steps_.end(), 2)->nSkipped < nMostSkipped)
            ++std::prev(steps_.end(), 2)->nSkipped;
    });
}

void PreviewTrace::failed(const Failure& failure) {
    guarded([&] {
        if (!steps_.empty())
            addOnce(steps_.back().reasons, "failed: " + failure.description());
    });
}

void PreviewTrace::noticed(Notice notice, std::string_view sDetail) {
    guarded([&] {
        if (steps_.empty())
            return;
        Step& step = steps_.back();
        step.bFoundNothing = step.bFoundNothing || notice == Notice::ResolvedToNothing;
        addOnce(step.reasons,
                halvane::explain(factsOf(step.pControl->oNode), {notice, 0, std::string(sDetail)}, {}));
    });
}

void PreviewTrace::remark(const ControlNode& control, std::string sText, const dom::NodeData* pParent,
                          bool bMore) {
    remarks_.push_back({{.sPlace = placeOf(control.oNode), .sText = std::move(sText), .bMore = bMore},
                        pParent,
                        oLastElement_.data()});
}

/// The element that the items of a node stand in.
const dom::NodeData* PreviewTrace::aroundItems(const Step& loop) const {
    return loop.pLastItem == nullptr ? elementAround().data() : dom::Node(loop.pLastItem).parentNode().data();
}

dom::Node PreviewTrace::elementAround() const {
    const auto pStep = std::find_if(steps_.rbegin(), steps_.rend(),
                                    [](const Step& step) { return step.pElement != nullptr; });
    return pStep == steps_.rend() ? oRoot_ : dom::Node(pStep->pElement);
}

// ---- Elements ----

bool PreviewTrace::isKnown(dom::Node oElement) const {
    const auto pKnown = elements_.find(oElement.data());
    // Nodes that were taken out give their place in memory to others.
    return pKnown != elements_.end() && pKnown->second.pParent == oElement.parentNode().data() &&
           pKnown->second.sName == oElement.nodeName();
}

void PreviewTrace::takeNew(const ExportState& state) {
    oRoot_ = state.oOutputManager->DOMDoc()->documentElement();
    if (!oRoot_)
        return;
    pRoot_ = &state.pControlTree->root();
    if (!isKnown(oRoot_))
        add(oRoot_, *pRoot_, false);
    takeNewIn(oRoot_);
}

/// Elements come at the end of the document: behind what is known, or in the last of it.
void PreviewTrace::takeNewIn(dom::Node oElement) {
    std::vector<dom::Node> fresh;
    for (dom::Node oChild = oElement.lastChild(); oChild; oChild = oChild.previousSibling()) {
        if (!isElement(oChild))
            continue;
        if (isKnown(oChild)) {
            takeNewIn(oChild);
            break;
        }
        fresh.push_back(oChild);
    }
    std::reverse(fresh.begin(), fresh.end());
    for (const dom::Node oChild : fresh) {
        take(oChild);
        takeNewIn(oChild);
    }
}

void PreviewTrace::take(dom::Node oElement) {
    Step* const pWriter = writerOf(oElement);
    if (pWriter == nullptr) {
        add(oElement, steps_.empty() ? *pRoot_ : *steps_.back().pControl, true);
        return;
    }
    pWriter->pElement = oElement.data();
    add(oElement, *pWriter->pControl, false);
}

PreviewTrace::Step* PreviewTrace::writerOf(dom::Node oElement) {
    const auto fits = [&](const Step& step) {
        return step.pElement == nullptr && (step.bItem || !step.pControl->bTargetsAttribute) &&
               (step.pControl->sTagName == oElement.nodeName() ||
                step.pControl->sTagName == oElement.baseName());
    };
    const auto pParent = std::find_if(steps_.rbegin(), steps_.rend(), [&](const Step& step) {
        return step.pElement != nullptr && step.pElement == oElement.parentNode().data();
    });
    auto pStep = std::find_if(pParent.base(), steps_.end(), fits);
    if (pStep == steps_.end())
        return itemOfCopy(oElement);
    // It is of the item rather than of the node that goes over items.
    for (auto pNext = std::next(pStep); pNext != steps_.end() && pNext->pControl == pStep->pControl &&
                                        pNext->bItem && pNext->pElement == nullptr;
         ++pNext)
        pStep = pNext;
    return &*pStep;
}

/// An item that writes a copy of the element that was made for it.
PreviewTrace::Step* PreviewTrace::itemOfCopy(dom::Node oElement) {
    const auto pItem = std::find_if(steps_.rbegin(), steps_.rend(), [&](const Step& step) {
        return step.bItem && step.pElement != nullptr && isKnown(dom::Node(step.pElement)) &&
               dom::Node(step.pElement).parentNode() == oElement.parentNode() &&
               dom::Node(step.pElement).nodeName() == oElement.nodeName();
    });
    return pItem == steps_.rend() ? nullptr : &*pItem;
}

void PreviewTrace::add(dom::Node oElement, const ControlNode& control, bool bPart) {
    KnownElement& known = elements_[oElement.data()];
    known.element.sPlace = placeOf(control.oNode);
    known.element.reasons.clear();
    known.element.bPart = bPart;
    known.pParent = oElement.parentNode().data();
    known.sName = oElement.nodeName();
    oLastElement_ = oElement;
}

void PreviewTrace::documentComplete(const ExportState& state) {
    guarded([&] {
        takeNew(state);
        std::unordered_map<const dom::NodeData*, std::size_t> numbers;
        for (dom::Node oNode = oRoot_; oNode; oNode = nextInDocument(oNode, oRoot_)) {
            if (!isElement(oNode))
                continue;
            numbers.emplace(oNode.data(), notes_.elements.size());
            notes_.elements.push_back(std::move(elements_[oNode.data()].element));
        }
        for (auto& anchored : remarks_) {
            const auto pParent = numbers.find(anchored.pParent);
            const auto pAfter = numbers.find(anchored.pAfter);
            anchored.remark.nParent = pParent == numbers.end() ? 0 : pParent->second;
            anchored.remark.nAfter = pAfter == numbers.end() ? anchored.remark.nParent : pAfter->second;
            notes_.remarks.push_back(std::move(anchored.remark));
        }
    });
}

} // namespace halvane
