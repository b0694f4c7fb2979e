#include "telling/ControlFileParts.h"

#include "base/Redaction.h"

#include <fmt/format.h>

namespace halvane {

std::string listed(const ControlProblem& problem, std::string_view sControl) {
    if (problem.lLine == 0)
        return fmt::format("{}: {}", shownFile(sControl, problem.sPart), problem.sText);
    return fmt::format("{}: {}", shownLine(sControl, problem.sPart, problem.lLine), problem.sText);
}

ControlProblem problemOf(const SecondProblem& problem, std::string_view sKind) {
    const dom::Node oNode = problem.oControlNode;
    return {sKind, partOf(oNode), oNode.line(), 0, withoutPasswords(problem.sText), oNode};
}

std::vector<ControlProblem> includeParts(const dom::DocumentPtr& oDocument, const std::string& sPath,
                                         const SecondEdition* pSecondEdition) {
    if (oDocument == nullptr || pSecondEdition == nullptr || pSecondEdition->pParts == nullptr ||
        !isOfSecondEdition(oDocument->documentElement()))
        return {};
    std::vector<ControlProblem> problems;
    for (const auto& problem : pSecondEdition->pParts->include(oDocument->documentElement(), sPath))
        problems.push_back(problemOf(problem, "MissingPart"));
    return problems;
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
