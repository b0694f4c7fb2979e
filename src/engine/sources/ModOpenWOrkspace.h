#pragma once

#include "engine/ExportState.h"

#include <cstdint>
#include <string_view>

namespace halvane {

/// Opens the workspace at a path, with the factory that the path's text chooses: ".SDE" anywhere in it the
/// catalog (which never yields a workspace), ".MDB" the local-database factory, "\\" the share factory, else
/// the default factory; letter case does not matter.
/// @param lWindowHandle the parent window of any prompt that the host shows.
/// @returns nothing when it cannot be opened; the observer alone is told why.
[[nodiscard]] host::GisWorkspacePtr OpenWorkspaceFromPath(ExportState& state, std::string_view sPath,
                                                          std::int32_t lWindowHandle);

} // namespace halvane
