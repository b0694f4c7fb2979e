#pragma once

#include "cli/ExitCodes.h"

#include <cstdio>
#include <exception>

namespace halvane::cli {

/// Runs a program's body. Whatever exception it ends with becomes one line and an exit code.
template<class Body>
int runGuarded(Body&& body) noexcept {
    try {
        return static_cast<int>(body());
    } catch (const std::exception& failure) {
        std::fputs("halvane: ", stderr);
        std::fputs(failure.what(), stderr);
        std::fputs("\n", stderr);
    } catch (...) {
        std::fputs("halvane: an unknown failure\n", stderr);
    }
    return static_cast<int>(ExitCode::NotWritten);
}

} // namespace halvane::cli
