#pragma once

namespace halvane::cli {

/// Runs the program. @returns the number for the shell. Throws nothing.
[[nodiscard]] int runCommandLine(int lArguments, const char* const* aArguments) noexcept;

} // namespace halvane::cli
