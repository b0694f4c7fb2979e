#pragma once

#include "engine/ModExporter.h"

namespace halvane {

/// Writes an item for each row that a node of the second edition goes over; the node says row rules. What was
/// current before is so again afterwards.
/// @param oFirst where the first item goes: an element that is held back, or the element around for a
/// dissolved node.
/// @throws Failure when the rows cannot be read.
void repeatSecondRows(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const ControlNode& control,
                      const ControlNode* pParent, const OutputElement& oFirst);

} // namespace halvane
