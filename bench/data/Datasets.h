#pragma once

#include <ogrsf_frmts.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

namespace halvane::bench {

/// A new, empty dataset; the format follows from the path's extension (.gpkg, .fgb). "PG:…" is a database
/// that is there.
/// @throws std::runtime_error when it cannot be made.
[[nodiscard]] GDALDatasetUniquePtr createDataset(const std::string& sPath);

/// A new layer in a projected reference system, or a table when `type` is wkbNone.
/// @throws std::runtime_error when it cannot be made.
OGRLayer& createLayer(GDALDataset& dataset, const std::string& sName, OGRwkbGeometryType type,
                      std::initializer_list<std::pair<const char*, OGRFieldType>> fields);

/// Writes `nCount` features, each filled by `fnFill` from its number (from 0), in transactions of many.
/// @throws std::runtime_error when one cannot be written.
void writeFeatures(GDALDataset& dataset, OGRLayer& layer, std::int64_t nCount,
                   const std::function<void(OGRFeature&, std::int64_t)>& fnFill);

} // namespace halvane::bench
