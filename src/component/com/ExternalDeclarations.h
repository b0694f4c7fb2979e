#pragma once

#include "base/com/ComPtr.h"

#include "Halvane.h"

namespace halvane::server {

/// The declarations that external processors are made against, as objects that do nothing. @throws Failure.
[[nodiscard]] com::ComPtr<_IExternalProcessor> makeExternalProcessor();
[[nodiscard]] com::ComPtr<_IExternalProgID> makeExternalProgID();

} // namespace halvane::server
