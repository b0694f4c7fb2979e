#include "exporters/ItemCopies.h"

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

const OutputElement& ItemCopies::first() {
    if (repeated_.bItemsStream && !oParent_.isStreamed() && canBeWrittenAgain(oCurrent_.node())) {
        oParent_.node().removeChild(oCurrent_.node());
        state_.oOutputManager->DOMDoc()->release(oCurrent_.node());
        beginStream();
        oCurrent_ = appendCopy();
    }
    return oCurrent_;
}

const OutputElement& ItemCopies::next() {
    if (pStream_ != nullptr) {
        pStream_->requireWhole();
    } else if (repeated_.bItemsStream && !oParent_.isStreamed()) {
        complete(oCurrent_);
        beginStream();
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
    return oParent_.appendElement(*pName_);
}

void ItemCopies::beginStream() {
    oCurrent_ = {};
    pStream_ = std::make_unique<dom::ItemStream>(oParent_.node());
    oParent_ = OutputElement(*pStream_, 0);
}

void ItemCopies::complete(const OutputElement& oItem) const {
    // The first item of a node that targets an attribute lives in its parent's element.
    if (oItem.isStreamed() || oItem.isNothing() || (bFirst_ && repeated_.bTargetsAttribute))
        return;
    completeItem(state_, oItem.node());
}

} // namespace halvane
