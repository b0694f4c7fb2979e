#pragma once

#include "oracle/FaultyData.h"
#include "oracle/Interpreter.h"
#include "oracle/Random.h"

#include <string>
#include <vector>

namespace halvane::oracle {

/// A random map document with what surrounds it, and the names in it that a control file can use.
struct World {
    Setting setting;
    std::string sTagDocument; ///< the tags as a document; "" when there are none
    std::string sTagPath;     ///< the path of the tags in it
    std::vector<std::string> aMaps;
    std::vector<std::string> aFeatureLayers;
    std::vector<std::string> aRasterLayers;
    std::vector<std::string> aTinLayers;
    std::vector<std::string> aTables;
    std::vector<std::string> aClasses; ///< in the workspaces
    std::vector<std::string> aLocations;
    std::vector<std::string> aProcessors;

    /// Keeps what the map holds only weakly.
    std::vector<ObjectPtr> aOwned;
};

/// The name of a layer without a feature class, in some maps.
inline constexpr const char* bareLayer = "Bare";

[[nodiscard]] World randomWorld(Random& random);

} // namespace halvane::oracle
