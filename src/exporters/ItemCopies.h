#pragma once

#include "engine/ModExporter.h"

#include <memory>

namespace halvane {

class HeldElement;

/// The output elements of a repeated node's items: the element handed in for the first, a new last child of
/// that element's parent for each later one. Where items can stream, the first is streamed too, so that one
/// item may be larger than memory.
class ItemCopies {
public:
    /// @param pName of the new elements, a name of the output document; nothing when XML does not allow it.
    ItemCopies(ExportState& state, const ControlNode& repeated, const OutputElement& oFirst,
               const dom::Name* pName);
    ~ItemCopies();
    ItemCopies(const ItemCopies&) = delete;
    ItemCopies& operator=(const ItemCopies&) = delete;

    [[nodiscard]] const OutputElement& current() const { return oCurrent_; }
    /// The first item's element, where the items are inside an item.
    const OutputElement& firstInItem();

    /// The first item's element, streamed if it can be: then handles on the one handed in end here. Not for
    /// items inside an item, which can be many: each stream inside an element of the tree takes memory until
    /// the document is saved.
    const OutputElement& first();

    /// Turns to a new element. The one before it is complete: handles on it end here. The last one stays, so
    /// that whoever handed in the first may go on with it; not so one that is streamed.
    /// @throws Failure ObjectVariableNotSet without a name.
    const OutputElement& next();

private:
    [[nodiscard]] OutputElement appendCopy() const;
    [[nodiscard]] bool omitsEmpty() const;
    [[nodiscard]] bool mayStream() const;
    const OutputElement& firstHeld();
    const OutputElement& nextHeld();
    const OutputElement& firstDissolved();
    void beginStream(const OutputElement& oElement);
    void complete(const OutputElement& oItem) const;

    ExportState& state_;
    const ControlNode& repeated_;
    OutputElement oParent_;
    OutputElement oCurrent_;
    const dom::Name* pName_;
    std::unique_ptr<dom::ItemStream> pStream_;
    std::unique_ptr<HeldElement> pHeld_; ///< the current item, where empty ones are left out
    bool bFirst_ = true;
};

} // namespace halvane
