#pragma once

#include "xml/dom/Dom.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace halvane::dom {

/// An element of a document that is parsed has no more attributes: in its start tag, and by the defaults of
/// its document type. Libraries compare each attribute with all before it: 100,000 take one of them 20
/// seconds. A tree that is built has no such limit.
inline constexpr std::size_t mostAttributes = 1000;

/// Nor are more namespace declarations in force anywhere: a prefix is searched for among all of them.
inline constexpr std::size_t mostDeclarations = 1000;

// The reasons of errors.
inline constexpr std::string_view attributesReason = "an element has more attributes than ";
inline constexpr std::string_view declarationsReason = "more namespace declarations are in force than ";
inline constexpr std::string_view widthRemedy = "; make elements of some attributes";

/// What parsing ends with at such an element. @param nLine where the element begins; 0: not known.
[[nodiscard]] ParseError tooManyAttributes(std::uint32_t nLine);

/// The line of the first start tag with too many attributes. @param sText shows its markup in ASCII.
[[nodiscard]] std::optional<std::uint32_t> lineOfTooManyAttributes(std::string_view sText) noexcept;

} // namespace halvane::dom
