#pragma once

#include "engine/second/NodeExpression.h"
#include "host/RowCondition.h"

#include <optional>

namespace halvane {

/// What of a node's condition the data itself can test: comparisons of fields of the rows with values that
/// are the same for all of them, together by and, or, not. Every row for which the node's condition holds
/// satisfies it. Nothing where no part can be told apart. The innermost rows are those that are tested.
[[nodiscard]] std::optional<host::RowCondition> pushedCondition(const ExportState& state,
                                                                const NodeExpression& where);

} // namespace halvane
