#pragma once

#include "run/describe/MapDescription.h"
#include "run/init/SchemaSkeleton.h"

#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// A control file of the second edition for everything that a map has, with comments: one to begin with.
/// @param names of the layers and tables that it is about; none: all. Any letter case; of one in a group its
/// own
///        name, or "Group:Member". Those that nothing was found for are left in it.
/// @param skeleton where there is one, the control file is for its documents, and tells what the map has in
/// comments.
[[nodiscard]] std::string starterControl(const MapDescription& description,
                                         const std::optional<SchemaSkeleton>& skeleton,
                                         std::vector<std::string>& names);

} // namespace halvane
