#pragma once

#include "engine/ExportState.h"

#include <functional>

namespace halvane {

/// Hands over the layers of the current map, those of groups in the place of their group.
void eachLayer(const ExportState& state, const std::function<void(const host::GisLayerPtr&)>& fnTake);

/// Hands over the standalone tables of the current map whose data is there.
void eachTable(const ExportState& state, const std::function<void(const host::GisTablePtr&)>& fnTake);

/// The table or feature class of that name, ignoring case, in a workspace: as the current map has it, with
/// the map's filter; else as the workspace does.
/// @throws Failure when neither has it.
[[nodiscard]] host::GisTablePtr tableOfWorkspace(const ExportState& state, host::GisWorkspace& workspace,
                                                 const std::string& sName);

} // namespace halvane
