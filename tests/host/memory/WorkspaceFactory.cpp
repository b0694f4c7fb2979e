#include "host/memory/WorkspaceFactory.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>

namespace halvane::host::memory {

void MemoryPropertySet::setProperty(std::string_view sName, const Value& vValue) {
    pass("GisPropertySet", "setProperty");
    for (auto& [sKnown, vKnown] : aProperties_) {
        if (equalIgnoringCase(sKnown, sName)) {
            vKnown = vValue;
            return;
        }
    }
    aProperties_.emplace_back(sName, vValue);
}

Value MemoryPropertySet::property(std::string_view sName) const {
    pass("GisPropertySet", "property");
    for (const auto& [sKnown, vKnown] : aProperties_) {
        if (equalIgnoringCase(sKnown, sName))
            return vKnown;
    }
    return {};
}

GisWorkspacePtr MemoryWorkspaceFactory::open(const GisPropertySet& properties, std::int32_t lWindowHandle) {
    pass("GisWorkspaceFactory", "open");
    return openNoted({kind_, toText(properties.property("DATABASE")), false, lWindowHandle});
}

GisWorkspacePtr MemoryWorkspaceFactory::openFromFile(std::string_view sPath, std::int32_t lWindowHandle) {
    pass("GisWorkspaceFactory", "openFromFile");
    return openNoted({kind_, std::string(sPath), true, lWindowHandle});
}

GisWorkspacePtr MemoryWorkspaceFactory::openNoted(WorkspaceOpening opening) {
    const auto& aWorkspaces = pRegistry_->aWorkspaces;
    const auto found = std::find_if(aWorkspaces.begin(), aWorkspaces.end(),
                                    [&](const auto& entry) { return entry.first == opening.sPath; });
    pRegistry_->aOpenings.push_back(opening);
    if (found == aWorkspaces.end())
        throw Failure(FailureNumber::HostFailure, "There is no workspace " + opening.sPath);
    return found->second;
}

} // namespace halvane::host::memory
