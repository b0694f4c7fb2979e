#pragma once

#include "engine/second/Inherited.h"
#include "engine/second/SecondEdition.h"
#include "engine/second/SecondNode.h"

#include <string_view>

namespace halvane {

/// Where an attribute of the second edition goes.
struct AttributeTarget {
    const SecondEdition& edition;
    SecondNode& node;
    Inherited& inherited; ///< what the node and all beneath it have
    bool bRoot;
    std::string_view sTagName; ///< of the node
    bool bInGroup;             ///< the node, or one around it, goes over groups of rows
};

/// Reads one attribute of the second edition.
/// @param sName without prefix.
/// @throws Failure DocumentFailure: what no export can follow, without naming the attribute.
void readSecondAttribute(std::string_view sName, std::string_view sValue, const AttributeTarget& target);

} // namespace halvane
