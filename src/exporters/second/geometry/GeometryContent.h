#pragma once

#include "engine/ModExporter.h"

namespace halvane {

// What nodes with h:Geometry write: of the current row's shape, and where there is no row, of the current
// layer's bounds.

/// Whether a node writes elements of a shape.
[[nodiscard]] bool writesElements(const ControlNode& control) noexcept;

/// "" for a row without a shape. @returns a text that lives until the next one is made.
/// @throws Failure when the shape cannot be written so.
[[nodiscard]] FieldText geometryText(ExportState& state, const ControlNode& control);

/// Writes them behind what the element holds; nothing for a row without a shape. Nothing is written of a
/// shape that fails.
/// @throws Failure when the shape cannot be written so.
void writeGeometryElements(ExportState& state, const ControlNode& control, const OutputElement& oElement);

} // namespace halvane
