#include "base/SqlQuotes.h"

#include "base/Text.h"

namespace halvane {

std::string quotedName(std::string_view sName) {
    return "\"" + replaceAll(sName, "\"", "\"\"") + "\"";
}

std::string quotedText(std::string_view sText) {
    return "'" + replaceAll(sText, "'", "''") + "'";
}

} // namespace halvane
