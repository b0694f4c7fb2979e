#pragma once

#include "host/Fields.h"

#include <optional>
#include <string_view>

namespace halvane::host::gdal {

/// A text as a value of a field type: whole numbers, floating-point numbers, dates ("2024-01-31", also with a
/// time), texts as they are. Nothing when it is not one.
[[nodiscard]] std::optional<Value> parseValue(std::string_view sText, FieldType type);

/// A default value in the data's SQL: quotes come off, and a cast behind them. Null for what is no constant
/// (CURRENT_TIMESTAMP).
[[nodiscard]] Value parseDefault(std::string_view sSql, FieldType type);

} // namespace halvane::host::gdal
