#pragma once

#include "engine/control/FoundField.h"
#include "engine/second/NodeExpression.h"
#include "engine/sources/DataSourceKind.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

struct KeptRelationship;

/// Whether a node of this kind can go over rows.
[[nodiscard]] constexpr bool isOfRows(DataSourceKind kind) noexcept {
    return kind == DataSourceKind::Feature || kind == DataSourceKind::Table ||
           kind == DataSourceKind::Record || kind == DataSourceKind::RelatedTable;
}

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

    /// Which side of a relationship class rows are looked for on.
    enum class Direction : std::uint8_t {
        Either,   ///< the one that the row around is not of
        Forward,  ///< the destination's
        Backward, ///< the origin's
    };

    bool bEach = false;              ///< h:Rows
    mutable std::vector<Link> links; ///< the fields are kept as they were found last
    std::string sRelationship;       ///< h:Relationship
    Direction direction = Direction::Either;
    mutable std::shared_ptr<KeptRelationship> pFollowed; ///< as it was followed last
    std::optional<NodeExpression> where;
    std::vector<Order> order;
    std::optional<NodeExpression> limit;
    std::optional<NodeExpression> group; ///< h:Group
};

} // namespace halvane
