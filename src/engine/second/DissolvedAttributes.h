#pragma once

#include "engine/control/ControlNode.h"
#include "engine/second/ControlParts.h"

#include <vector>

namespace halvane {

/// Finds the attributes that nodes without an element of their own would add to the element around too late,
/// behind content, or a second time. @param root read whole.
void checkDissolvedAttributes(const ControlNode& root, std::vector<SecondProblem>& problems);

} // namespace halvane
