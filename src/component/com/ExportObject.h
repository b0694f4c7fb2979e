#pragma once

#include "base/com/ComPtr.h"

#include "Halvane.h"

namespace halvane::server {

/// The class clsExport as clients see it. @throws Failure.
[[nodiscard]] com::ComPtr<_clsExport> makeExportObject();

} // namespace halvane::server
