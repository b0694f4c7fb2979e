#include "host/gdal/source/DataInUse.h"

#include "host/gdal/source/HandlePool.h"

#include <atomic>
#include <utility>

namespace halvane::host::gdal {

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): all that a signal's handler can reach
constinit thread_local const Source* pInUse = nullptr;
constinit thread_local int lCalls = 0;
constinit std::atomic<int> lCallsOfAllThreads = 0;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

static_assert(std::atomic<int>::is_always_lock_free);

} // namespace

DataInUse dataInUse() noexcept {
    const bool bAny = lCallsOfAllThreads.load(std::memory_order_relaxed) > 0;
    if (lCalls == 0 || pInUse == nullptr)
        return {nullptr, nullptr, bAny};
    return {pInUse->sDisplayName.c_str(), pInUse->sDriver.c_str(), bAny};
}

bool libraryIsCalled() noexcept {
    return lCalls > 0;
}

const Source* setDataInUse(const Source* pSource) noexcept {
    return std::exchange(pInUse, pSource);
}

void forgetDataInUse(const Source* pSource) noexcept {
    if (pInUse == pSource)
        pInUse = nullptr;
}

LibraryCall::LibraryCall() noexcept {
    ++lCalls;
    lCallsOfAllThreads.fetch_add(1, std::memory_order_relaxed);
}

LibraryCall::~LibraryCall() {
    --lCalls;
    lCallsOfAllThreads.fetch_sub(1, std::memory_order_relaxed);
}

} // namespace halvane::host::gdal
