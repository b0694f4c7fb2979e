#pragma once

#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"

#include <string_view>

namespace halvane {

/// The layer of a map with that name, ignoring case; nothing when none. "Group:Member" names a direct member
/// of a group layer, in the last of several groups that have it. A plain name finds a top-level layer first,
/// else a direct member of a group: the first such in the last group that has one.
/// @throws Failure as the host does.
[[nodiscard]] host::GisLayerPtr FindLayerByName(const host::GisMap& map, std::string_view sName);

/// Whether there is such a layer or table, and whether it has that name, ignoring case.
/// @throws Failure as the host does.
[[nodiscard]] bool isNamed(const host::GisLayer* pLayer, std::string_view sName);
[[nodiscard]] bool isNamed(const host::GisTable* pTable, std::string_view sName);

/// The first direct member of a group with that name, ignoring case; nothing when none.
[[nodiscard]] host::GisLayerPtr firstMemberNamed(const host::GisGroupLayer& group, std::string_view sName);

/// The first standalone table of a map whose dataset has that name, ignoring case; nothing when none.
/// @throws Failure as the host does.
[[nodiscard]] host::GisTablePtr findTableByName(const host::GisMap& map, std::string_view sName);

} // namespace halvane
