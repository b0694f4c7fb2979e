#pragma once

#include "engine/ModExporter.h"
#include "engine/second/NodeGeometry.h"

namespace halvane {

/// The shape of a row in the coordinates that a node asks for; nothing for a row without one. Its points fail
/// where they have no place in them.
/// @throws Failure when the shapes of the row's table cannot be brought there.
[[nodiscard]] host::GisGeometryPtr shapeFor(ExportState& state, const ControlNode& control,
                                            const host::GisRow& row);
/// Whether a node has shapes in other coordinates than their own.
[[nodiscard]] bool isTransformed(const ControlNode& control) noexcept;
/// The same for a space of one's own.
[[nodiscard]] host::GisGeometryPtr shapeIn(ExportState& state, const NodeSpace& space,
                                           const host::GisRow& row);
/// @throws Failure where a point of the shape cannot be read: for whoever writes as he reads.
void requirePoints(const host::GisGeometry& shape);

} // namespace halvane
