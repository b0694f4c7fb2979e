#include "cli/describe/Page.h"

#include "telling/Text.h"

#include <fmt/format.h>

namespace halvane::cli {

void Page::gap() {
    if (!sText_.empty() && !sText_.ends_with("\n\n"))
        sText_ += '\n';
}

void Page::line(std::string_view sText) {
    sText_ += std::string(2 * nDepth_, ' ') + printable(sText) + '\n';
}

void Page::fact(std::string_view sLabel, std::string_view sText) {
    line(fmt::format("{:<24}{}", sLabel, sText));
}

void Page::columns(const std::vector<std::vector<std::string>>& rows) {
    for (const auto& sLine : alignedColumns(rows))
        line(sLine);
}

} // namespace halvane::cli
