#pragma once

#include "host/Forward.h"

#include <functional>
#include <string>

namespace halvane {

// No map has none of them.

/// Hands over the layers of a map, those of groups in the place of their group.
void eachLayer(const host::GisMapPtr& pMap, const std::function<void(const host::GisLayerPtr&)>& fnTake);

/// Hands over the standalone tables of a map whose data is there.
void eachTable(const host::GisMapPtr& pMap, const std::function<void(const host::GisTablePtr&)>& fnTake);

/// The table or feature class of that name, ignoring case, in a workspace: as the map has it, with
/// the map's filter; else as the workspace does.
/// @throws Failure when neither has it.
[[nodiscard]] host::GisTablePtr tableOfWorkspace(const host::GisMapPtr& pMap, host::GisWorkspace& workspace,
                                                 const std::string& sName);

} // namespace halvane
