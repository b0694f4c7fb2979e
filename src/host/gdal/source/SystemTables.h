#pragma once

#include <string_view>

namespace halvane::host::gdal {

/// Whether a table is one that the GeoPackage format, or SQLite, keeps for itself.
[[nodiscard]] bool isGeoPackageTable(std::string_view sTable);

/// Whether a table bears the name of one that SpatiaLite makes in every database. The names are plain words:
/// a table of people's own may bear one too.
[[nodiscard]] bool isSpatialiteTable(std::string_view sTable);

} // namespace halvane::host::gdal
