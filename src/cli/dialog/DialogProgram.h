#pragma once

#include "host/DataHost.h"

namespace halvane::cli {

/// The program behind `halvane dialog`: opens the map, shows the form, returns once it is closed.
/// @param hosts stays. @param aArguments those of `halvane dialog`. @returns the number for the shell. Throws
/// nothing.
[[nodiscard]] int runDialogProgram(const host::DataHosts& hosts, int lArguments, char** aArguments) noexcept;

} // namespace halvane::cli
