#pragma once

#include "oracle/ControlTree.h"
#include "oracle/Random.h"
#include "oracle/RandomWorld.h"

namespace halvane::oracle {

/// A random control file over the world: mostly one that a person could have written, partly a wild one.
[[nodiscard]] ControlNode randomControlFile(Random& random, const World& world);

} // namespace halvane::oracle
