#pragma once

#include "engine/second/Inherited.h"
#include "engine/second/SecondEdition.h"
#include "engine/second/SecondNode.h"

#include <cstdint>
#include <string_view>

namespace halvane {

/// The loops over rows that a node stands in.
struct RowsAround {
    std::uint32_t nLoops = 0;
    std::uint32_t nGroupLoops = 0; ///< up to the outermost one over groups, with it; 0 where there is none
    bool bOwn = false;             ///< the node is one itself
};

/// Where an attribute of the second edition goes.
struct AttributeTarget {
    const SecondEdition& edition;
    SecondNode& node;
    Inherited& inherited; ///< what the node and all beneath it have
    bool bRoot;
    std::string_view sTagName; ///< of the node
    bool bOwnGroups;           ///< the node itself does
    RowsAround rows;
    bool bProperty; ///< stands in a repeated node whose children write properties and nothing else
};

/// Reads one attribute of the second edition.
/// @param sName without prefix.
/// @throws Failure DocumentFailure: what no export can follow, without naming the attribute.
void readSecondAttribute(std::string_view sName, std::string_view sValue, const AttributeTarget& target);

} // namespace halvane
