#pragma once

#include "xml/dom/NodeData.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane::dom::msxml {

/// The attribute that carries an element's number in an image. It declares a namespace, so that XPath does
/// not see it; nobody else declares this prefix.
inline constexpr std::string_view numberAttribute = "xmlns:halvane-image-number";

/// A tree of ours as a text that MSXML can load and whose elements are numbered.
struct Image {
    std::string sText;
    std::vector<NodeData*> aElements; ///< by their numbers
    std::string sNamespaces;          ///< the prefixes that the root declares, as MSXML takes them
};

/// @param top a document node or the top of a detached tree. A top that XML cannot hold alone (a text, an
/// attribute) has an image without it.
[[nodiscard]] Image makeImage(NodeData& top);

/// The first node from `pNode` on, among siblings, that has an image of its own; nothing after the last.
/// Texts that touch have one image, and it is the first one's.
[[nodiscard]] NodeData* imaged(NodeData* pNode) noexcept;
/// Likewise behind a node that has one.
[[nodiscard]] NodeData* imagedAfter(NodeData& node) noexcept;
/// The texts that share their image with this one, itself first.
[[nodiscard]] std::vector<NodeData*> sharingImage(NodeData& text);

} // namespace halvane::dom::msxml
