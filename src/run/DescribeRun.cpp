#include "run/DescribeRun.h"

#include "base/Failure.h"
#include "run/describe/Reading.h"
#include "telling/Interruption.h"
#include "telling/Paths.h"

#include <fmt/format.h>

namespace halvane {

DescribeOutcome describeMapAt(const std::string& sMap, const std::string& sShown, const DescriptionForm& form,
                              const host::DataHosts& hosts, const Console& console, bool bAllowConnections) {
    hosts.endWhen(&interruptionRequested);
    const auto pHost = hosts.create();
    if (bAllowConnections)
        pHost->allowConnections();
    try {
        const auto pDocument = pHost->openMapDocument(sMap);
        for (const auto& sRemark : pHost->remarks(pDocument))
            console.note(fmt::format("halvane: warning: {}: {}", sShown, sRemark));
        const MapDescription description = describeMap(*pDocument, pHost->namedWorkspaces());
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

} // namespace halvane
