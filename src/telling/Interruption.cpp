#include "telling/Interruption.h"

#include <atomic>

namespace halvane {

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): all that a signal's handler can reach
std::atomic<bool> bRequested = false;
static_assert(std::atomic<bool>::is_always_lock_free);

} // namespace

void requestInterruption() noexcept {
    bRequested.store(true, std::memory_order_relaxed);
}

void forgetInterruption() noexcept {
    bRequested.store(false, std::memory_order_relaxed);
}

bool interruptionRequested() noexcept {
    return bRequested.load(std::memory_order_relaxed);
}

} // namespace halvane
