#include "host/gdal/source/DataInUse.h"

#include "host/gdal/source/HandlePool.h"

namespace halvane::host::gdal {

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): all that a signal's handler can reach
constinit thread_local const Source* pInUse = nullptr;
constinit thread_local int lCalls = 0;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

DataInUse dataInUse() noexcept {
    if (lCalls == 0 || pInUse == nullptr)
        return {};
    return {pInUse->sDisplayName.c_str(), pInUse->sDriver.c_str()};
}

void setDataInUse(const Source* pSource) noexcept {
    pInUse = pSource;
}

LibraryCall::LibraryCall() noexcept {
    ++lCalls;
}

LibraryCall::~LibraryCall() {
    --lCalls;
}

} // namespace halvane::host::gdal
