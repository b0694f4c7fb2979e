#pragma once

#include <cstddef>
#include <cstdint>

namespace halvane {

/// What h:ForEach goes over.
enum class ForEach : std::uint8_t {
    Map,
    Layer,
    Table,
    Field,
    Domain,
    Relationship,
    Workspace,
    Code,
    Subtype,
    Part,   ///< of the current row's shape
    Vertex, ///< of the part, or of the shape; the last
};
/// For tables with a row for each.
inline constexpr std::size_t nForEachThings = static_cast<std::size_t>(ForEach::Vertex) + 1;

} // namespace halvane
