#pragma once

#include "engine/ModExporter.h"

#include <optional>
#include <string_view>

namespace halvane {

/// The name of a row's value among the coded values of its field's domain, in the row's subtype. Each domain
/// is read once.
/// @returns nothing for a field without such a domain, for a code that it does not hold, and for a row of a
/// table that is not at hand; else a text that lives until the export ends.
[[nodiscard]] std::optional<std::string_view> codedName(ExportState& state, const host::GisRow& row,
                                                        std::int32_t lField, const ValueView& value);

} // namespace halvane
