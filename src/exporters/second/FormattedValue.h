#pragma once

#include "engine/ModExporter.h"

#include <optional>

namespace halvane {

/// The text of a row's value as the node being worked on has it formatted; nothing where the first edition's
/// rules hold.
/// @param value of the row's field. @returns a text that lives as RecordFieldText's.
/// @throws Failure when the value cannot be written in that form.
[[nodiscard]] std::optional<FieldText> formattedRowValue(ExportState& state, const host::GisRow& row,
                                                         const FoundField& field, const ValueView& value,
                                                         std::int32_t lDecimalPlaces);

/// The same of a date of no row.
[[nodiscard]] std::optional<FieldText> formattedDate(ExportState& state, const Date& date);

} // namespace halvane
