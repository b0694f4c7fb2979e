#pragma once

#include <cstdint>

namespace halvane::io {

/// When a file that was written counts as written.
enum class Durability : std::uint8_t {
    LeftToSystem, ///< once the system has it; a loss of power soon after may take it
    OnDisk,       ///< once the file and its name are on the disk
};

} // namespace halvane::io
