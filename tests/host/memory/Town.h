#pragma once

#include "host/conformance/Conformance.h"
#include "host/memory/Memory.h"

namespace halvane::test {

/// The town in memory.
[[nodiscard]] conformance::OpenTown townInMemory(const conformance::Town& town);

} // namespace halvane::test
