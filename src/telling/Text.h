#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

/// The text, or its first nMost bytes and "…" when it is longer.
[[nodiscard]] std::string shortened(std::string_view sText, std::size_t nMost);

/// A value of the control file as a message quotes it: the beginning of a long one, passwords masked.
[[nodiscard]] std::string inQuotes(std::string_view sValue);

/// The text as one line for a terminal, which foreign text must not steer: line ends and tabs become blanks;
/// other control characters, those that change the direction of reading or separate lines, and bytes that are
/// no UTF-8 are shown by their numbers (\u001B, \xFF). Passwords are masked, what is longer than any reader
/// wants is cut.
[[nodiscard]] std::string printable(std::string_view sText);

/// JSON whose texts steer neither a terminal nor the direction of reading, and are the same to a program:
/// control characters beyond ASCII and those that change the direction or separate lines are written by their
/// numbers (\u202E). @param sJson well-formed; ASCII's control characters stand in no text of it.
[[nodiscard]] std::string withoutSteering(std::string_view sJson);

/// "1 item", "2 items".
[[nodiscard]] std::string counted(std::uint64_t lCount, std::string_view sSingular);

} // namespace halvane
