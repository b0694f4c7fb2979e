#include "cli/Interruption.h"

namespace halvane::cli {

// The component is a guest in its process: how that ends is the process's own affair.

void prepareSignals() noexcept {}

bool interruptionRequested() noexcept {
    return false;
}

} // namespace halvane::cli
