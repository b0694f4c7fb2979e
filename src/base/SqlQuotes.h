#pragma once

#include <string>
#include <string_view>

namespace halvane {

/// A name as an identifier of SQL.
[[nodiscard]] std::string quotedName(std::string_view sName);

/// A text as a literal of SQL.
[[nodiscard]] std::string quotedText(std::string_view sText);

} // namespace halvane
