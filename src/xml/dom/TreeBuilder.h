#pragma once

#include "xml/dom/DocumentImpl.h"

#include <string_view>

namespace halvane::dom {

/// Builds the tree of a parsed document in document order. What it is given is taken to be well-formed.
class TreeBuilder {
public:
    explicit TreeBuilder(Document::Impl& document) : document_(document), pCurrent_(&document.documentNode) {}

    NodeData& startElement(std::string_view sName, std::uint32_t nLine);
    /// Of the element started last.
    NodeData& attribute(std::string_view sName, std::string_view sValue);
    void endElement() noexcept { pCurrent_ = pCurrent_->pParent; }
    /// A text, CDATA section or comment.
    NodeData& characters(Kind kind, std::string_view sText, std::uint32_t nLine);
    NodeData& instruction(std::string_view sTarget, std::string_view sData, std::uint32_t nLine);
    /// `sText` is the whole declaration, "<!DOCTYPE" to ">".
    NodeData& documentType(std::string_view sName, std::string_view sText);
    /// The node of the document itself.
    [[nodiscard]] NodeData& document() const noexcept { return document_.documentNode; }

private:
    NodeData& append(Kind kind, std::uint32_t nLine);

    Document::Impl& document_;
    NodeData* pCurrent_;
};

} // namespace halvane::dom
