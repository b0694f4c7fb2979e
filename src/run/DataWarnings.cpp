#include "run/DataWarnings.h"

#include "base/Failure.h"

#include <fmt/format.h>

#include <algorithm>

namespace halvane {

namespace {

bool somethingWasNotFound(const ExportLog& log) {
    return std::any_of(log.records().begin(), log.records().end(), [](const auto& entry) {
        return std::any_of(entry.second.events.begin(), entry.second.events.end(),
                           [](const NodeEvent& event) { return event.notice == Notice::ResolvedToNothing; });
    });
}

} // namespace

std::vector<std::string> dataWarnings(const ExportLog& log, const host::DataHost& host,
                                      const host::GisMapDocumentPtr& pMapDocument) {
    if (pMapDocument == nullptr || log.givenUp() || !somethingWasNotFound(log))
        return {};
    std::vector<std::string> warnings;
    try {
        for (const auto& sProblem : host.problems(pMapDocument))
            warnings.push_back(fmt::format("--map: {}", sProblem));
    } catch (const Failure& failure) {
        warnings.push_back(fmt::format("--map: {}", failure.description()));
    }
    return warnings;
}

} // namespace halvane
