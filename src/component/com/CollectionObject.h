#pragma once

#include "base/com/ComPtr.h"
#include "collection/dCollection.h"

#include "Halvane.h"

namespace halvane::server {

/// A collection as clients see it; all that is done to either is done to both.
/// @throws Failure.
[[nodiscard]] com::ComPtr<_dCollection> makeCollectionObject(dCollectionPtr dEntries);

} // namespace halvane::server
