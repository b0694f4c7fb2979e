#pragma once

#include "host/DataHost.h"

namespace halvane::cli {

/// Runs the program. @param hosts stays. @returns the number for the shell. Throws nothing.
[[nodiscard]] int runCommandLine(const host::DataHosts& hosts, int lArguments,
                                 const char* const* aArguments) noexcept;

} // namespace halvane::cli
