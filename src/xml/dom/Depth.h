#pragma once

#include "xml/dom/Dom.h"

#include <cstdint>
#include <string_view>

namespace halvane::dom {

/// The elements of a document that is parsed are nested no deeper. The tree itself stands any depth; what
/// follows a document by recursion (the walk of a control file, merging) is to fit on a stack of 1 MB, of
/// which a release build takes less than half. MSXML has versions whose own limit nobody can raise.
#ifdef _WIN32
inline constexpr std::uint32_t deepestElement = 256;
#else
inline constexpr std::uint32_t deepestElement = 1000;
#endif
/// The same where the document type declares entities: a few of them make a large document, and the guards of
/// a parser against that go together with this depth.
inline constexpr std::uint32_t deepestElementWithEntities = 256;

// The reason of an error, around the number.
inline constexpr std::string_view depthReason = "the depth of its elements is more than ";
inline constexpr std::string_view depthRemedy = "; nest them less deeply";

/// What parsing ends with at an element that is nested deeper.
/// @param nLine where the element begins; 0: not known.
[[nodiscard]] ParseError tooDeep(std::uint32_t nDeepest, std::uint32_t nLine);

} // namespace halvane::dom
