#pragma once

#include "host/gdal/source/HandlePool.h"

#include <cstdint>
#include <optional>
#include <string>

namespace halvane::host::gdal {

// A count is the number of rows that a reading yields.

/// The count as the format knows it; nothing where only a reading tells: what many formats say without
/// reading counts rows that are deleted, damaged or of another kind too.
/// @param sWhere "" for all rows.
[[nodiscard]] std::optional<std::int64_t> knownRowCount(const LayerHandle& layer, const std::string& sWhere);
/// The count by a reading. @throws Failure that the reading ends in.
[[nodiscard]] std::int64_t countRows(const LayerHandle& layer, const std::string& sWhere);

} // namespace halvane::host::gdal
