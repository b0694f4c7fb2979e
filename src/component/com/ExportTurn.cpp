#include "component/com/ExportTurn.h"

#include "base/Failure.h"
#include "component/com/ModuleObjects.h"
#include "engine/ExportState.h"

#include <atomic>
#include <cstdint>

namespace halvane::server {

namespace {

std::recursive_mutex& turnMutex() {
    static std::recursive_mutex turn;
    return turn;
}

/// The system gives the number of a thread that has ended to others; this one is never used again.
std::uint64_t thisThread() noexcept {
    static std::atomic<std::uint64_t> nThreads = 0;
    thread_local const std::uint64_t nThread = ++nThreads;
    return nThread;
}

/// The thread of the objects that the module holds. Guarded by the turn.
std::uint64_t nObjectsThread = 0;

} // namespace

ExportTurn::ExportTurn() : lock_(turnMutex(), std::try_to_lock) {
    if (!lock_.owns_lock())
        throw Failure(FailureNumber::InvalidProcedureCall, "an export is running already");
    if (nObjectsThread != thisThread() && moduleHoldsObjects())
        abandonModuleObjects();
    nObjectsThread = thisThread();
}

bool releaseModuleObjects() noexcept {
    const std::unique_lock lock(turnMutex(), std::try_to_lock);
    if (!lock.owns_lock() || moduleState().bExporting)
        return false;
    if (moduleHoldsObjects() && nObjectsThread != thisThread())
        return false;
    moduleState().release();
    return true;
}

} // namespace halvane::server
