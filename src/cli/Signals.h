#pragma once

namespace halvane::cli {

/// SIGINT, SIGTERM and SIGHUP ask for an orderly end; the second one of a kind ends the process at once, and
/// what the data library computes without end is ended some seconds after the first. A file that passes the
/// size limit of the process is an ordinary write error.
void prepareSignals() noexcept;

} // namespace halvane::cli
