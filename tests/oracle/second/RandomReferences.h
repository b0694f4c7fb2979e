#pragma once

// The spatial references of random cases: what a register knows, and those of the data.

#include "host/memory/SpatialReference.h"
#include "oracle/Random.h"

#include <string>
#include <string_view>

namespace halvane::oracle {

/// That of a code. To be asked first where no host lives, whose failures they would share.
/// @throws Failure for a code that is not registered.
[[nodiscard]] host::GisSpatialReferencePtr registeredReference(std::string_view sCode);
/// One that is registered.
[[nodiscard]] std::string someCode(Random& random);

/// Tells where the coordinates of data lie, and perhaps their code.
void placeInWorld(Random& random, host::memory::MemorySpatialReference& reference);

} // namespace halvane::oracle
