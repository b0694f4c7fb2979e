#pragma once

namespace halvane {

/// Asks for an orderly end of what runs. On any thread; a signal's handler may ask, too.
void requestInterruption() noexcept;

/// What begins now is not ended by a request that was made before.
void forgetInterruption() noexcept;

/// Whether an orderly end was asked for.
[[nodiscard]] bool interruptionRequested() noexcept;

} // namespace halvane
