#pragma once

#include "engine/control/FoundField.h"
#include "engine/second/NodeExpression.h"

#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// Which rows a repeated node of the second edition goes over, and in which order.
struct RowRules {
    /// A field of the row around, and that of the related row which equals it.
    struct Link {
        std::string sAround;
        std::string sRelated;
        FoundField around = {};
        FoundField related = {};
    };
    struct Order {
        NodeExpression expression;
        bool bDescending;
    };

    bool bEach = false;              ///< h:Rows
    mutable std::vector<Link> links; ///< the fields are kept as they were found last
    std::optional<NodeExpression> where;
    std::vector<Order> order;
    std::optional<NodeExpression> limit;
};

} // namespace halvane
