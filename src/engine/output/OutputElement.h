#pragma once

#include "xml/dom/Dom.h"
#include "xml/dom/ItemStream.h"

#include <string_view>

namespace halvane {

class HeldElement;
using dom::TextKind;

/// The element that output goes to: one of the output document's tree, one that is written straight to the
/// document's spool, or one whose start tag is held back. A borrowed handle, like a node; it may be no
/// element at all.
class OutputElement {
public:
    OutputElement() = default;
    /// Also for a node that is nothing.
    OutputElement(dom::Node oNode) : oNode_(oNode) {} // NOLINT(*-explicit-*): a node is an output element
    OutputElement(dom::ItemStream& stream, dom::ItemStream::Depth depth) : pStream_(&stream), depth_(depth) {}
    explicit OutputElement(HeldElement& held) : pHeld_(&held) {}

    /// Whether the element is written at once: nothing before its end can be changed any more. One that is
    /// held back is not written yet.
    [[nodiscard]] bool isStreamed() const noexcept { return pStream_ != nullptr; }
    /// Whether it is no element at all.
    [[nodiscard]] bool isNothing() const noexcept {
        return pStream_ == nullptr && pHeld_ == nullptr && !oNode_;
    }
    /// Whether its start tag is held back.
    [[nodiscard]] bool isHeld() const noexcept { return pHeld_ != nullptr; }
    /// The element itself: one whose start tag is held back is made.
    [[nodiscard]] OutputElement made() const;
    /// The same for a node without an element of its own: its text is set behind what others have written.
    [[nodiscard]] OutputElement shared() const {
        OutputElement oShared = *this;
        oShared.bShared_ = true;
        return oShared;
    }

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
            appendUnstreamed(name, sText, kind);
    }
    /// Of an element whose start tag is held back, any value but "" is content.
    void setAttribute(const dom::Name& name, std::string_view sValue, TextKind kind = TextKind::Any) const;
    /// The same for a value that never is.
    void setConstantAttribute(const dom::Name& name, std::string_view sValue) const;
    /// A declaration of a namespace. Without it the element would be unfit: where it fails, an element of the
    /// tree is taken back, and of one written at once nothing fails but the writing.
    void setDeclaration(const dom::Name& name, std::string_view sAddress) const;
    /// Takes an element of the tree out of it.
    void takeBack() const;
    /// Sets the value of an attribute that was made before; of a streamed element, right before.
    /// @throws Failure ObjectVariableNotSet when there is none of that name.
    void fillAttribute(std::string_view sName, std::string_view sValue, TextKind kind = TextKind::Any) const;
    void setText(std::string_view sText, TextKind kind = TextKind::Any) const {
        if (pStream_ != nullptr)
            pStream_->setText(depth_, sText, kind);
        else
            setUnstreamedText(sText, kind);
    }
    /// A text behind what the element holds already.
    void appendText(std::string_view sText, TextKind kind = TextKind::Any) const;
    /// A CDATA section behind what the element holds already.
    void appendCData(std::string_view sData) const;
    /// There are to be no line breaks between the tags in it; it has no content yet.
    void setInline() const;
    /// The element that this one is a child of.
    [[nodiscard]] OutputElement parent() const;

    /// Of an element that is not streamed, with its prefix.
    [[nodiscard]] std::string_view name() const;
    /// The element in the tree. @throws Failure ActionNotSupported for a streamed one.
    [[nodiscard]] dom::Node node() const;

private:
    [[nodiscard]] OutputElement appendNode(const dom::Name& name) const;
    void appendUnstreamed(const dom::Name& name, std::string_view sText, TextKind kind) const;
    void setUnstreamedText(std::string_view sText, TextKind kind) const;

    dom::Node oNode_;
    dom::ItemStream* pStream_ = nullptr;
    HeldElement* pHeld_ = nullptr;
    dom::ItemStream::Depth depth_ = 0;
    bool bShared_ = false;
};

} // namespace halvane
