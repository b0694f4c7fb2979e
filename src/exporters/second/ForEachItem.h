#pragma once

#include "engine/ModExporter.h"
#include "engine/second/ItemScope.h"

#include <functional>

namespace halvane {

/// Calls for each thing of that kind that the map, the layer, the table or the item at hand has, the thing
/// being current. What was current before is so again after each.
/// @throws Failure when the things cannot be listed; what fails of one of them is told, and the next follow.
void forEachItem(ExportState& state, ForEach kind, const std::function<void()>& fnItem);

} // namespace halvane
