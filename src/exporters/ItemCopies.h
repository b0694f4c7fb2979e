#pragma once

#include "engine/ModExporter.h"

#include <memory>
#include <string>
#include <utility>

namespace halvane {

/// The output elements of a repeated node's items: the element handed in for the first, a new last child of
/// that element's parent for each later one. Where items can stream, the first is streamed too, so that one
/// item may be larger than memory.
class ItemCopies {
public:
    /// @param pName of the new elements, a name of the output document; nothing when XML does not allow it.
    ItemCopies(ExportState& state, const ControlNode& repeated, const OutputElement& oFirst,
               const dom::Name* pName)
        : state_(state), repeated_(repeated), oParent_(oFirst.parent()), oCurrent_(oFirst), pName_(pName) {}

    [[nodiscard]] const OutputElement& current() const { return oCurrent_; }

    /// The first item's element, streamed if it can be: then handles on the one handed in end here. Not for
    /// items inside an item, which can be many: each stream inside an element of the tree takes memory until
    /// the document is saved.
    const OutputElement& first() {
        if (repeated_.bItemsStream && !oParent_.isStreamed() && canBeWrittenAgain(oCurrent_.node())) {
            oParent_.node().removeChild(oCurrent_.node());
            state_.oOutputManager->DOMDoc()->release(oCurrent_.node());
            beginStream();
            oCurrent_ = appendCopy();
        }
        return oCurrent_;
    }

    /// Turns to a new element. The one before it is complete: handles on it end here. The last one stays, so
    /// that whoever handed in the first may go on with it; not so one that is streamed.
    const OutputElement& next() {
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

private:
    OutputElement appendCopy() {
        if (pName_ == nullptr)
            throw Failure::of(FailureNumber::ObjectVariableNotSet);
        return oParent_.appendElement(*pName_);
    }

    /// An element in which nothing stands yet, at its parent's end.
    static bool canBeWrittenAgain(Node oElement) {
        return !oElement.hasChildNodes() && oElement.attributes().length() == 0 && oElement.parentNode() &&
               oElement.parentNode().lastChild() == oElement;
    }

    void beginStream() {
        oCurrent_ = {};
        pStream_ = std::make_unique<dom::ItemStream>(oParent_.node());
        oParent_ = OutputElement(*pStream_, 0);
    }

    void complete(const OutputElement& oItem) {
        // The first item of a node that targets an attribute lives in its parent's element.
        if (oItem.isStreamed() || oItem.isNothing() || (bFirst_ && repeated_.bTargetsAttribute))
            return;
        completeItem(state_, oItem.node());
    }

    ExportState& state_;
    const ControlNode& repeated_;
    OutputElement oParent_;
    OutputElement oCurrent_;
    const dom::Name* pName_;
    std::unique_ptr<dom::ItemStream> pStream_;
    bool bFirst_ = true;
};

} // namespace halvane
