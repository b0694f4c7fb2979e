#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::cli {

/// The text, or its first lMost bytes and "…" when it is longer.
[[nodiscard]] std::string shortened(std::string_view sText, std::size_t lMost);

/// A value of the control file as a message quotes it: the beginning of a long one, passwords masked.
[[nodiscard]] std::string inQuotes(std::string_view sValue);

/// The text as one line for a terminal: control characters become blanks (foreign text must not steer the
/// terminal), passwords are masked, what is longer than any reader wants is cut.
[[nodiscard]] std::string printable(std::string_view sText);

/// "1 item", "2 items".
[[nodiscard]] std::string counted(std::uint64_t lCount, std::string_view sSingular);

} // namespace halvane::cli
