#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halvane::dom::msxml {

/// A document whose bytes are not those of its markup: what looks at markup must not look at them.
struct HiddenMarkup {
    std::string sEncoding;            ///< as the document declares it
    std::optional<std::string> sText; ///< in UTF-8; nothing when this system cannot decode it
};

/// @param sBytes a document that is not in UTF-16.
/// @returns nothing for encodings in which "<", "&" and ">" are the bytes of ASCII and no other character
/// holds them: MSXML decodes these.
[[nodiscard]] std::optional<HiddenMarkup> hiddenMarkupOf(std::string_view sBytes);

} // namespace halvane::dom::msxml
