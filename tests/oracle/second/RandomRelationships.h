#pragma once

#include "host/memory/Workspace.h"
#include "oracle/Random.h"

#include <string>

namespace halvane::oracle {

/// Adds relationship classes between the tables that worlds have, one of them many to many.
void addRelationships(Random& random, host::memory::MemoryWorkspace& workspace);
/// The name of one of them, or of none.
[[nodiscard]] std::string someRelationship(Random& random);

} // namespace halvane::oracle
