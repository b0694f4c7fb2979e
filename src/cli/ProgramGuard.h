#pragma once

#include "cli/TerminalConsole.h"
#include "telling/ExitCodes.h"
#include "telling/StandardStreams.h"

#include <cstdio>
#include <exception>
#include <string>

namespace halvane::cli {

/// Tells the exception that a program ends with.
inline void tellEnd(const char* pWhat) noexcept {
    try {
        TerminalConsole(false).failure(std::string("halvane: ") + pWhat);
    } catch (...) {
        std::fputs("halvane: out of memory\n", standardError());
    }
}

/// Runs a program's body. Whatever exception it ends with becomes one line and an exit code.
template<class Body>
int runGuarded(Body&& body) noexcept {
    try {
        return static_cast<int>(body());
    } catch (const std::exception& failure) {
        tellEnd(failure.what());
    } catch (...) {
        tellEnd("an unknown failure");
    }
    return static_cast<int>(ExitCode::NotWritten);
}

} // namespace halvane::cli
