#include "host/gdal/source/Interruption.h"

#include "base/Failure.h"

#include <atomic>

namespace halvane::host::gdal {

namespace {

// A database asks while it computes, on whatever thread that is: it can be given nothing but the process's
// own.
std::atomic<InterruptionTest>& test() noexcept {
    static std::atomic<InterruptionTest> pTest = nullptr;
    return pTest;
}

} // namespace

void setInterruptionTest(InterruptionTest pTest) noexcept {
    test() = pTest;
}

bool interruptionAsked() noexcept {
    const InterruptionTest pTest = test();
    return pTest != nullptr && pTest();
}

void endIfInterrupted() {
    if (interruptionAsked())
        throw Failure(FailureNumber::HostFailure, "interrupted");
}

} // namespace halvane::host::gdal
