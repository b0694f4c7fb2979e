#pragma once

#include "base/Text.h"

#include <string>
#include <string_view>

namespace halvane {

/// A name as an identifier of SQL.
[[nodiscard]] inline std::string quotedName(std::string_view sName) {
    return "\"" + replaceAll(sName, "\"", "\"\"") + "\"";
}

/// A text as a literal of SQL.
[[nodiscard]] inline std::string quotedText(std::string_view sText) {
    return "'" + replaceAll(sText, "'", "''") + "'";
}

} // namespace halvane
