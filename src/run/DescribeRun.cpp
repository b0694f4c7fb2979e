#include "run/DescribeRun.h"

#include "base/Failure.h"
#include "run/Overwriting.h"
#include "run/describe/DescriptionChanges.h"
#include "run/describe/DescriptionJson.h"
#include "run/describe/Reading.h"
#include "telling/Interruption.h"
#include "telling/Paths.h"

#include <fmt/format.h>

namespace halvane {

DescribeOutcome describeMapAt(const std::string& sMap, const std::string& sShown, const DescriptionForm& form,
                              const host::DataHosts& hosts, const Console& console, bool bAllowConnections,
                              std::optional<std::size_t> sketchPoints, const std::string& sTarget) {
    hosts.endWhen(&interruptionRequested);
    const auto pHost = hosts.create();
    if (bAllowConnections)
        pHost->allowConnections();
    try {
        const auto pDocument = pHost->openMapDocument(sMap);
        for (const auto& sRemark : pHost->remarks(pDocument))
            console.note(fmt::format("halvane: warning: {}: {}", sShown, sRemark));
        if (const std::string sProblem = sTarget.empty() ? "" : dataProblem(sTarget, nullptr, *pHost);
            !sProblem.empty())
            return {ExitCode::InvalidInput, {}, sProblem};
        const MapDescription description = describeMap(*pDocument, pHost->namedWorkspaces(), sketchPoints);
        if (!interruptionRequested())
            return {ExitCode::Written, form(description, absolutePath(sMap)), {}};
    } catch (const DescriptionGivenUp&) {
        // Told below.
    } catch (const Failure& failure) {
        if (!interruptionRequested())
            return {ExitCode::InvalidInput, {}, fmt::format("{}: {}", sShown, failure.description())};
    }
    return {ExitCode::NotWritten, {}, "nothing was described: the description was cancelled"};
}

DescribeOutcome compareMapsAt(const std::string& sOld, const std::string& sNew, bool bJson,
                              const host::DataHosts& hosts, const Console& console, bool bAllowConnections) {
    constexpr std::size_t nExtentsAlone = 0;
    const auto described = [&](const std::string& sMap, const char* sShown) {
        return describeMapAt(sMap, sShown, &descriptionJson, hosts, console, bAllowConnections,
                             nExtentsAlone);
    };
    const DescribeOutcome before = described(sOld, "OLD");
    if (before.exitCode != ExitCode::Written)
        return before;
    const DescribeOutcome after = described(sNew, "NEW");
    if (after.exitCode != ExitCode::Written)
        return after;
    const auto changes = compareDescriptions(before.sText, after.sText);
    return {changes.empty() ? ExitCode::Written : ExitCode::Findings,
            bJson ? changesJson(changes, absolutePath(sOld), absolutePath(sNew)) : changesText(changes),
            {}};
}

} // namespace halvane
