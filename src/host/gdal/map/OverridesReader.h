#pragma once

// What a map document says of data beyond what the data says.

#include "host/gdal/map/ElementReader.h"

#include <optional>
#include <vector>

namespace halvane::host::gdal {

[[nodiscard]] std::vector<FieldOverride> readFields(const ElementReader& reader,
                                                    const MarkupElement& element);
[[nodiscard]] std::optional<SubtypesFacts> readSubtypes(const ElementReader& reader,
                                                        const MarkupElement& layer);
/// @param owner a layer, a table or a map.
[[nodiscard]] std::optional<ReferenceOverride> readSpatialReference(const ElementReader& reader,
                                                                    const MarkupElement& owner);

} // namespace halvane::host::gdal
