#pragma once

#include <csignal>

namespace halvane::cli {

/// Asks an export of a list to end. It is none of those that a terminal or a scheduler sends to all
/// processes: coming twice, they end a process at once.
inline constexpr int signalOfParent = SIGUSR1;

/// SIGINT, SIGTERM, SIGHUP and SIGUSR1 ask for an orderly end; the second one of a kind ends the process at
/// once, and what the data library computes without end is ended some seconds after the first. A file that
/// passes the size limit of the process is an ordinary write error.
void prepareSignals() noexcept;

} // namespace halvane::cli
