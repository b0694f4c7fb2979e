#pragma once

#include "engine/sources/NamedThings.h"
#include "host/Map.h"

#include <string>
#include <vector>

namespace halvane {

struct MapThing {
    std::string sName;
    ThingKind kind = ThingKind::FeatureLayer;
    std::vector<std::string> groups; ///< that it stands in, the outermost first
};

/// The layers of a map, groups entered, then its standalone tables. What does not tell its name is left out.
/// @param lMostTables more tables than that are not asked for their names: a map may have to open each one.
[[nodiscard]] std::vector<MapThing> thingsOf(const host::GisMap& map, std::int32_t lMostTables);

} // namespace halvane
