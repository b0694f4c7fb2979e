#pragma once

#include "host/gdal/facts/Fields.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace halvane::host::gdal {

/// What a table's definition says of a column.
struct ColumnDefault {
    std::string sType;
    std::string sSql; ///< "" without a default
};
/// By upper-cased column name.
using ColumnDefaults = std::unordered_map<std::string, ColumnDefault>;

/// The columns of a GeoPackage's or an SQLite file's table; none for any other format.
[[nodiscard]] ColumnDefaults columnDefaultsOf(const LayerHandle& layer);

/// What the database would put into a row that leaves the column out, as a literal of SQL; bytes as base64
/// where the field's values are bytes. Nothing for NULL, and for what a function tells anew for each row.
[[nodiscard]] std::optional<std::string> insertedByDefault(const ColumnDefault& column, ColumnKind kind);

} // namespace halvane::host::gdal
