#pragma once

#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/facts/SubtypesFacts.h"
#include "host/gdal/source/HandlePool.h"

#include <optional>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// The markup in which a driver reports how a table is defined; nothing where it reports none, or an empty
/// one.
[[nodiscard]] std::optional<std::string> definitionOf(const LayerHandle& layer);

/// A subtype's code; nothing unless the text is a whole number of 32 bits.
[[nodiscard]] std::optional<std::int32_t> subtypeCodeOf(std::string_view sText);

/// The subtypes of a definition; nothing without any. @throws Failure for a code that is none.
[[nodiscard]] std::optional<SubtypesFacts> subtypesOfDefinition(const std::string& sMarkup);
/// The false origins and scales of a definition.
[[nodiscard]] CoordinateGrid gridOfDefinition(const std::string& sMarkup);

} // namespace halvane::host::gdal
