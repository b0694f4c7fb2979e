#pragma once

#include "xml/dom/DocumentImpl.h"

#include <string_view>

namespace halvane::dom {

/// Builds the tree of a parsed document in document order. What it is given is taken to be well-formed.
class TreeBuilder {
public:
    explicit TreeBuilder(Document::Impl& document) : document_(document), pCurrent_(&document.documentNode) {}

    /// The name as the document keeps it, for those who use it again and again.
    /// @throws Failure DocumentFailure for a text that XML does not allow as a name.
    [[nodiscard]] const Name& name(std::string_view sName) { return *document_.names.intern(sName); }

    NodeData& startElement(const Name& name, std::uint32_t nLine);
    NodeData& startElement(std::string_view sName, std::uint32_t nLine) {
        return startElement(name(sName), nLine);
    }
    /// Of the element started last.
    NodeData& attribute(const Name& name, std::string_view sValue);
    NodeData& attribute(std::string_view sName, std::string_view sValue) {
        return attribute(name(sName), sValue);
    }
    void endElement() noexcept { pCurrent_ = pCurrent_->pParent; }
    /// A text, CDATA section or comment.
    NodeData& characters(Kind kind, std::string_view sText, std::uint32_t nLine);
    NodeData& instruction(std::string_view sTarget, std::string_view sData, std::uint32_t nLine);
    /// The XML declaration: it comes before all that was built so far.
    NodeData& declaration(std::string_view sData);
    /// `sText` is the whole declaration, "<!DOCTYPE" to ">".
    NodeData& documentType(std::string_view sName, std::string_view sText);
    /// Gives back all that was built.
    void discard() noexcept;
    /// The node of the document itself.
    [[nodiscard]] NodeData& document() const noexcept { return document_.documentNode; }

private:
    NodeData& append(Kind kind, std::uint32_t nLine);

    Document::Impl& document_;
    NodeData* pCurrent_;
};

} // namespace halvane::dom
