#pragma once

#include "base/Value.h"

#include <ogr_core.h>

namespace halvane::host::gdal {

/// A date, a time or both, as a feature holds it.
[[nodiscard]] Date dateOf(const OGRField& raw);

} // namespace halvane::host::gdal
