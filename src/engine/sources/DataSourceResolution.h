#pragma once

#include "base/Value.h"
#include "host/Forward.h"

#include <string_view>

namespace halvane {

struct ExportState;

/// What the resolution of a data source works on.
struct ResolutionRequest {
    ExportState& state;
    const host::GisMapPtr& pCurrentMap;
    const host::GisFeatureLayerPtr& pCurrentLayer;
    std::string_view sIdentity;
    std::string_view sIdentityValue;
    std::string_view sDataLocation;
};

// The object of a kind; empty for none. They throw Failure.

[[nodiscard]] Value resolveMap(const ResolutionRequest& request);
[[nodiscard]] Value resolveMapLayer(const ResolutionRequest& request);
[[nodiscard]] Value resolveFeatureLayer(const ResolutionRequest& request);
[[nodiscard]] Value resolveRasterLayer(const ResolutionRequest& request);
[[nodiscard]] Value resolveTinLayer(const ResolutionRequest& request);
[[nodiscard]] Value resolveFeatureClass(const ResolutionRequest& request);
[[nodiscard]] Value resolveSubType(const ResolutionRequest& request);
[[nodiscard]] Value resolveTable(const ResolutionRequest& request);
[[nodiscard]] Value resolveRelatedTable(const ResolutionRequest& request);
[[nodiscard]] Value resolveRelationship(const ResolutionRequest& request);
[[nodiscard]] Value resolveWorkspaceDomain(const ResolutionRequest& request);
[[nodiscard]] Value resolveWorkspace(const ResolutionRequest& request);
[[nodiscard]] Value resolveTinWorkspace(const ResolutionRequest& request);

} // namespace halvane
