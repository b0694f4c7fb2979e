#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::cli {

/// The text without what follows "password=" or "pwd=", or stands before the "@" of an address.
[[nodiscard]] std::string withoutPasswords(std::string_view sText);

/// The text as one line for a terminal: control characters become blanks (foreign text must not steer the
/// terminal), passwords are masked, what is longer than any reader wants is cut.
[[nodiscard]] std::string printable(std::string_view sText);

/// "1 item", "2 items".
[[nodiscard]] std::string counted(std::uint64_t lCount, std::string_view sSingular);

} // namespace halvane::cli
