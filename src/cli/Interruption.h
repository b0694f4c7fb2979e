#pragma once

namespace halvane::cli {

/// SIGINT, SIGTERM and SIGHUP ask for an orderly end; the second one of a kind ends the process at once. A
/// file that passes the size limit of the process is an ordinary write error.
void prepareSignals() noexcept;

/// Whether an orderly end was asked for.
[[nodiscard]] bool interruptionRequested() noexcept;

} // namespace halvane::cli
