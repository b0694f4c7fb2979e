#pragma once

#include "collection/Failure.h"

#include <mutex>

namespace halvane::server {

/// Exports are one at a time in a process, whatever threads they are asked for on. Waiting for another
/// thread could wait for ever: its export may need this one's objects.
class ExportTurn {
public:
    /// @throws Failure InvalidProcedureCall while another thread exports.
    ExportTurn() : lock_(turnMutex(), std::try_to_lock) {
        if (!lock_.owns_lock())
            throw Failure(FailureNumber::InvalidProcedureCall, "an export is running already");
    }

private:
    static std::recursive_mutex& turnMutex() {
        static std::recursive_mutex turn;
        return turn;
    }

    std::unique_lock<std::recursive_mutex> lock_;
};

} // namespace halvane::server
