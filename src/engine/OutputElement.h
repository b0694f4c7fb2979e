#pragma once

#include "xml/dom/Dom.h"
#include "xml/dom/ItemStream.h"

#include <string_view>

namespace halvane {

/// The element that output goes to: one of the output document's tree, or one that is written straight to the
/// document's spool. A borrowed handle, like a node; it may be no element at all.
class OutputElement {
public:
    OutputElement() = default;
    /// Also for a node that is nothing.
    OutputElement(dom::Node oNode) : oNode_(oNode) {} // NOLINT(*-explicit-*): a node is an output element
    OutputElement(dom::ItemStream& stream, dom::ItemStream::Depth depth) : pStream_(&stream), depth_(depth) {}

    /// Whether the element is written at once: nothing before its end can be changed any more.
    [[nodiscard]] bool isStreamed() const noexcept { return pStream_ != nullptr; }

    /// Whether it is no element at all.
    [[nodiscard]] bool isNothing() const noexcept { return pStream_ == nullptr && !oNode_; }

    /// A new last child. @param name of the output document.
    [[nodiscard]] OutputElement appendElement(const dom::Name& name) const;
    void setAttribute(const dom::Name& name, std::string_view sValue) const;
    /// Sets the value of an attribute that was made before; of a streamed element, right before.
    /// @throws Failure ObjectVariableNotSet when there is none of that name.
    void fillAttribute(std::string_view sName, std::string_view sValue) const;
    void setText(std::string_view sText) const;
    /// The element that this one is a child of.
    [[nodiscard]] OutputElement parent() const;

    /// The element in the tree. @throws Failure ActionNotSupported for a streamed one.
    [[nodiscard]] dom::Node node() const;

private:
    dom::Node oNode_;
    dom::ItemStream* pStream_ = nullptr;
    dom::ItemStream::Depth depth_ = 0;
};

} // namespace halvane
