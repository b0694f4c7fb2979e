#pragma once

#include "host/gdal/source/HandlePool.h"

#include <cstdint>
#include <optional>
#include <string>

namespace halvane::host::gdal {

/// What a file itself tells of its rows.
struct StoredRows {
    std::int64_t lCount = 0; ///< there are no fewer
    std::string sFault;      ///< why the file cannot be whole; "" when nothing shows
};

/// Whether a format's driver ends its rows in silence where the file ends too early, or holds what is no row,
/// while the file tells.
[[nodiscard]] bool tellsStoredRows(const Source& source);
/// Nothing where the file does not tell. A text is read through once.
[[nodiscard]] std::optional<StoredRows> storedRowsOf(const LayerHandle& layer);

} // namespace halvane::host::gdal
