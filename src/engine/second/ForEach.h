#pragma once

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
    Vertex, ///< of the part, or of the shape
};

} // namespace halvane
