#pragma once

#include "xml/dom/Dom.h"
#include "xml/dom/ItemStream.h"

#include <string_view>

namespace halvane {

using dom::TextKind;

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
    [[nodiscard]] OutputElement appendElement(const dom::Name& name) const {
        if (pStream_ != nullptr)
            return {*pStream_, pStream_->appendElement(depth_, name)};
        return appendNode(name);
    }
    /// A new last child with a text and nothing else.
    void appendElement(const dom::Name& name, std::string_view sText, TextKind kind) const {
        if (pStream_ != nullptr)
            pStream_->appendElement(depth_, name, sText, kind);
        else
            appendNode(name).setText(sText);
    }
    void setAttribute(const dom::Name& name, std::string_view sValue, TextKind kind = TextKind::Any) const;
    /// Sets the value of an attribute that was made before; of a streamed element, right before.
    /// @throws Failure ObjectVariableNotSet when there is none of that name.
    void fillAttribute(std::string_view sName, std::string_view sValue, TextKind kind = TextKind::Any) const;
    void setText(std::string_view sText, TextKind kind = TextKind::Any) const {
        if (pStream_ != nullptr)
            pStream_->setText(depth_, sText, kind);
        else
            dom::Node(oNode_).setText(sText);
    }
    /// The element that this one is a child of.
    [[nodiscard]] OutputElement parent() const;

    /// The element in the tree. @throws Failure ActionNotSupported for a streamed one.
    [[nodiscard]] dom::Node node() const;

private:
    [[nodiscard]] dom::Node appendNode(const dom::Name& name) const;

    dom::Node oNode_;
    dom::ItemStream* pStream_ = nullptr;
    dom::ItemStream::Depth depth_ = 0;
};

} // namespace halvane
