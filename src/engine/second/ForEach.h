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
};

} // namespace halvane
