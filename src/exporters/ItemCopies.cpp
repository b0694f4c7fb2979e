#include "exporters/ItemCopies.h"

#include "engine/output/HeldElement.h"
#include "engine/second/SecondControl.h"

namespace halvane {

namespace {

/// An element in which nothing stands yet, at its parent's end.
bool canBeWrittenAgain(Node oElement) {
    return !oElement.hasChildNodes() && oElement.attributes().length() == 0 && oElement.parentNode() &&
           oElement.parentNode().lastChild() == oElement;
}

} // namespace

ItemCopies::ItemCopies(ExportState& state, const ControlNode& repeated, const OutputElement& oFirst,
                       const dom::Name* pName)
    : state_(state), repeated_(repeated), oParent_(oFirst.parent()), oCurrent_(oFirst), pName_(pName) {}

ItemCopies::~ItemCopies() = default;

bool ItemCopies::omitsEmpty() const {
    return repeated_.pSecond != nullptr && repeated_.pSecond->omit == Omit::Empty;
}

bool ItemCopies::mayStream() const {
    return repeated_.bItemsStream && state_.options.pTrace == nullptr;
}

const OutputElement& ItemCopies::firstInItem() {
    if (isDissolved(repeated_))
        return oCurrent_;
    if (omitsEmpty())
        return firstHeld();
    oParent_ = oParent_.made();
    oCurrent_ = oCurrent_.made();
    return oCurrent_;
}

const OutputElement& ItemCopies::first() {
    if (isDissolved(repeated_))
        return firstDissolved();
    if (omitsEmpty())
        return firstHeld();
    oParent_ = oParent_.made();
    const bool bStreams = mayStream() && !oParent_.isStreamed();
    if (bStreams && oCurrent_.isHeld()) {
        beginStream(oParent_);
        oCurrent_ = appendCopy();
    } else if (bStreams && canBeWrittenAgain(oCurrent_.node())) {
        oParent_.node().removeChild(oCurrent_.node());
        state_.oOutputManager->DOMDoc()->release(oCurrent_.node());
        beginStream(oParent_);
        oCurrent_ = appendCopy();
    }
    oCurrent_ = oCurrent_.made();
    return oCurrent_;
}

/// What stands in the items goes to the element around them, which may never get any.
const OutputElement& ItemCopies::firstDissolved() {
    if (mayStream() && !oCurrent_.isStreamed() && !oCurrent_.isHeld()) {
        const OutputElement oElement = oCurrent_;
        beginStream(oElement);
        oCurrent_ = oParent_;
    }
    return oCurrent_;
}

/// What the first item of an attribute's node writes goes where the attribute is.
const OutputElement& ItemCopies::firstHeld() {
    return repeated_.bTargetsAttribute ? oCurrent_ : nextHeld();
}

const OutputElement& ItemCopies::nextHeld() {
    if (pHeld_ != nullptr && pHeld_->isMade())
        complete(pHeld_->made());
    pHeld_ = std::make_unique<HeldElement>(oParent_, *pName_);
    oCurrent_ = pHeld_->output();
    declareNamespaces(repeated_, oCurrent_);
    return oCurrent_;
}

const OutputElement& ItemCopies::next() {
    if (isDissolved(repeated_))
        return oCurrent_;
    if (omitsEmpty())
        return nextHeld();
    if (pStream_ != nullptr) {
        pStream_->requireWhole();
    } else if (mayStream() && !oParent_.isStreamed()) {
        complete(oCurrent_);
        beginStream(oParent_);
    }
    const OutputElement oCopy = appendCopy();
    complete(oCurrent_);
    bFirst_ = false;
    oCurrent_ = oCopy;
    return oCurrent_;
}

OutputElement ItemCopies::appendCopy() const {
    if (pName_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    const OutputElement oCopy = oParent_.appendElement(*pName_);
    declareNamespaces(repeated_, oCopy);
    return oCopy;
}

void ItemCopies::beginStream(const OutputElement& oElement) {
    const Node oNode = oElement.node();
    oCurrent_ = {};
    pStream_ = std::make_unique<dom::ItemStream>(oNode);
    oParent_ = OutputElement(*pStream_, 0);
}

void ItemCopies::complete(const OutputElement& oItem) const {
    // The first item of a node that targets an attribute lives in its parent's element.
    if (oItem.isStreamed() || oItem.isNothing() || (bFirst_ && repeated_.bTargetsAttribute))
        return;
    completeItem(state_, oItem.node());
}

} // namespace halvane
