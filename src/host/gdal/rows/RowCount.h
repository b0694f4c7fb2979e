#pragma once

#include "host/gdal/rows/Clause.h"
#include "host/gdal/source/HandlePool.h"

#include <cstdint>
#include <optional>
#include <string>

namespace halvane::host::gdal {

// A count is the number of rows that a reading yields.

/// The count as the format knows it; nothing where only a reading tells: what many formats say without
/// reading counts rows that are deleted, damaged or of another kind too.
[[nodiscard]] std::optional<std::int64_t> knownRowCount(const LayerHandle& layer, const Clause& clause);
/// About how many rows the data says that it has, told at once; nothing where it does not say. Not for what
/// is written.
[[nodiscard]] std::optional<std::int64_t> aboutRowCount(const LayerHandle& layer);
/// Whether data of a source may say that.
[[nodiscard]] bool saysRowCount(const Source& source);
/// The count by a reading. @throws Failure that the reading ends in.
[[nodiscard]] std::int64_t countRows(const LayerHandle& layer, const Clause& clause);

} // namespace halvane::host::gdal
