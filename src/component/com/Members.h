#pragma once

#include "base/com/Windows.h"
#include "collection/ValueCollection.h"

#include <memory>

namespace halvane::server {

/// The members of any collection that can be enumerated, in order; nothing for no collection.
/// @throws Failure when it cannot be enumerated.
[[nodiscard]] std::unique_ptr<ValueCollection> membersOf(IDispatch* pCollection);

} // namespace halvane::server
