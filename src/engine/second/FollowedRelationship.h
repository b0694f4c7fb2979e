#pragma once

#include "engine/second/RowRules.h"
#include "host/Forward.h"

#include <vector>

namespace halvane {

/// A relationship class as it is followed from the rows of one table.
struct FollowedRelationship {
    host::GisTablePtr pTable; ///< whose rows are related
    std::vector<RowRules::Link> links;
    host::GisTablePtr pLinkTable; ///< nothing: the links lead to the related row
    std::vector<RowRules::Link> linksToTable;
};

/// Finds out how a node's relationship class leads from the rows of a table.
/// @param rules say a relationship class. @param pMap whose tables go before those of the workspace.
/// @throws Failure telling why none does: no class of that name, or which way to go is not told.
[[nodiscard]] FollowedRelationship follow(const host::GisMapPtr& pMap, const RowRules& rules,
                                          host::GisTable& from);

} // namespace halvane
