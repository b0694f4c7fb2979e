#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::dom {

struct CharacterRepairs;

/// Whether XML 1.0 with namespaces allows the text as a name (of an element, an attribute, a processing
/// instruction): one colon at most, with a name on either side of it.
[[nodiscard]] bool isXmlName(std::string_view sText) noexcept;

/// Whether a text consists of XML white space only; true for "".
[[nodiscard]] bool isXmlWhiteSpace(std::string_view sText) noexcept;

/// What begins at an offset inside a text.
struct DataCharacter {
    enum class Kind : std::uint8_t {
        Allowed,
        Forbidden, ///< a character that XML 1.0 does not know: to be dropped
        Invalid,   ///< no UTF-8: to be replaced by U+FFFD
    };
    Kind kind = Kind::Allowed;
    std::uint8_t nBytes = 1;
};

/// Classifies the character at `p`, which is before `pEnd`. Of invalid UTF-8 it takes the longest beginning
/// of a valid sequence, at least one byte.
[[nodiscard]] DataCharacter characterOfData(const char* p, const char* pEnd) noexcept;

/// U+FFFD in UTF-8.
inline constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// The text with forbidden characters dropped and invalid UTF-8 replaced; both are added to `repairs`.
[[nodiscard]] std::string cleaned(std::string_view sText, CharacterRepairs& repairs);

/// Whether nothing is left of the text once its forbidden characters are dropped.
[[nodiscard]] bool isNothingOnceCleaned(std::string_view sText) noexcept;

} // namespace halvane::dom
