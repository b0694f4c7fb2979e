#include "telling/ControlFileParts.h"

#include "engine/second/ControlParts.h"

#include <fmt/format.h>

namespace halvane {

void includeParts(const dom::DocumentPtr& oDocument, const std::string& sPath, const std::string& sShown,
                  const SecondEdition* pSecondEdition, std::vector<std::string>& problems) {
    if (oDocument == nullptr || pSecondEdition == nullptr || pSecondEdition->pParts == nullptr ||
        !isOfSecondEdition(oDocument->documentElement()))
        return;
    for (const auto& problem : pSecondEdition->pParts->include(oDocument->documentElement(), sPath))
        problems.push_back(fmt::format(
            "{}: {}", shownLine(sShown, partOf(problem.oControlNode), problem.oControlNode.line()),
            problem.sText));
}

std::string shownFile(std::string_view sControl, std::string_view sPart) {
    const auto nFolder = sControl.find_last_of("/\\");
    return sPart.empty() ? std::string(sControl)
                         : fmt::format("{}{}", sControl.substr(0, nFolder + 1), sPart); // npos + 1 is 0
}

std::string shownLine(std::string_view sControl, std::string_view sPart, std::uint32_t lLine) {
    return fmt::format("{}:{}", shownFile(sControl, sPart), lLine);
}

} // namespace halvane
