#pragma once

namespace halvane::host::gdal {

/// Tells whether an orderly end was asked for. Called often and on any thread; it must not throw.
using InterruptionTest = bool (*)() noexcept;

/// From now on what databases compute ends with a failure once the test says so; nothing: never.
void setInterruptionTest(InterruptionTest pTest) noexcept;

[[nodiscard]] bool interruptionAsked() noexcept;
/// @throws Failure when an orderly end was asked for.
void endIfInterrupted();

} // namespace halvane::host::gdal
