#pragma once

#include <string>
#include <string_view>

namespace halvane {

/// The text with "***" in place of what follows "password=", "passwd=" or "pwd=", and of what stands between
/// the user's name and the "@" of an address ("scheme://user:…@host"). Masks too much rather than too little.
[[nodiscard]] std::string withoutPasswords(std::string_view sText);

} // namespace halvane
