#pragma once

#include "base/com/ComPtr.h"
#include "component/com/PublicClasses.h"

namespace halvane::server {

/// What the system asks for new objects of a class. @param madeClass lives as long as the process.
/// @throws Failure.
[[nodiscard]] com::ComPtr<IClassFactory> makeClassFactory(const PublicClass& madeClass);

} // namespace halvane::server
