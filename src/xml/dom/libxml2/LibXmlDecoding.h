#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halvane::dom::libxml {

/// The text of a document whose bytes do not show its markup (UTF-16, EBCDIC, Shift_JIS …), for those who
/// look at markup: UTF-8, as far as it can be decoded. Nothing where the bytes show it, in UTF-8 and Latin 1
/// as in all in which the bytes of ASCII stand for nothing else.
[[nodiscard]] std::optional<std::string> hiddenTextOf(std::string_view sBytes);

} // namespace halvane::dom::libxml
