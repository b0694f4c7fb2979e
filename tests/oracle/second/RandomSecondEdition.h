#pragma once

#include "oracle/ControlTree.h"
#include "oracle/Random.h"
#include "oracle/RandomWorld.h"

namespace halvane::oracle {

/// Makes a control file one of the second edition: gives nodes attributes of it, and adds nodes that only it
/// has. Some files stay as they are.
void addSecondEdition(Random& random, const World& world, ControlNode& root);

} // namespace halvane::oracle
