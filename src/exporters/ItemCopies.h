#pragma once

#include "engine/ModExporter.h"

#include <string>
#include <utility>

namespace halvane {

/// The output elements of a repeated node's items: the element handed in for the first, a new last child of
/// that element's parent for each later one.
class ItemCopies {
public:
    /// @param sName the name of the new elements.
    ItemCopies(ExportState& state, Node oRepeatedNode, Node oFirstElement, std::string sName)
        : state_(state), node_(oRepeatedNode), oParent_(oFirstElement.parentNode()), oCurrent_(oFirstElement),
          sName_(std::move(sName)) {}

    [[nodiscard]] Node current() const { return oCurrent_; }

    /// Turns to a new element. The one before it is complete: handles on it end here. The last one stays, so
    /// that whoever handed in the first may go on with it.
    Node next() {
        const Node oCopy = oParent_.appendChild(newOutputElement(state_, sName_));
        // The first item of a node that targets an attribute lives in its parent's element.
        if (!bFirst_ || !node_.targetsAttribute())
            completeItem(state_, oCurrent_);
        bFirst_ = false;
        oCurrent_ = oCopy;
        return oCurrent_;
    }

private:
    ExportState& state_;
    ClsXMLNode node_;
    Node oParent_;
    Node oCurrent_;
    std::string sName_;
    bool bFirst_ = true;
};

} // namespace halvane
