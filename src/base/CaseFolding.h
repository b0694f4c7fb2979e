#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

/// A character of a text: its code point, or, for a byte that is no part of valid UTF-8, a number beyond all
/// code points that is that byte's own.
struct Character {
    std::int32_t lCode = 0;
    std::size_t nBytes = 1;
};

[[nodiscard]] constexpr bool isAscii(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x80;
}
[[nodiscard]] constexpr char asciiUpper(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
[[nodiscard]] constexpr char asciiLower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The character that begins at an offset inside the text.
[[nodiscard]] Character characterAt(std::string_view sText, std::size_t nOffset) noexcept;
/// Appends a code point in UTF-8.
void appendCode(std::string& out, std::int32_t lCode);
/// Unicode simple case mappings; numbers beyond the code points map to themselves.
[[nodiscard]] std::int32_t upperCode(std::int32_t lCode) noexcept;
[[nodiscard]] std::int32_t lowerCode(std::int32_t lCode) noexcept;

} // namespace halvane
