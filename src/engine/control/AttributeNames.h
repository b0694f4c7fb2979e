#pragma once

#include "engine/control/ControlNode.h"

#include <vector>

namespace halvane {

struct ExportState;
class OutputElement;

/// Marks those of an element's attributes whose names can make it unreadable, or one that takes another's
/// place (ControlNode::attributeName).
/// @param aAttributes all control nodes that write an attribute of one output element, in document order.
void markAttributeNames(const std::vector<ControlNode*>& aAttributes);

/// The slow part of checkAttributeName.
void checkMarkedName(ExportState& state, const ControlNode& control, const OutputElement& oElement);

/// Tells the observer where an attribute is about to take the place of one that another node has written.
void checkContestedName(const ExportState& state, const ControlNode& control, const OutputElement& oElement);

/// Tells the observer where a written attribute bears the name of another one of its element, or declares a
/// prefix that no document may declare so. That is an error of the node; what was asked for stays written.
/// @param oElement that has the attribute.
inline void checkAttributeName(ExportState& state, const ControlNode& control,
                               const OutputElement& oElement) {
    if (control.attributeName != AttributeName::Plain)
        checkMarkedName(state, control, oElement);
}

} // namespace halvane
