#pragma once

#include <mutex>

namespace halvane::server {

/// Exports are one at a time in a process, whatever threads they are asked for on. Waiting for another
/// thread could wait for ever: its export may need this one's objects.
///
/// An export that does not begin leaves its map document with the module, for a later one without. Only the
/// thread that it was given on may call it: with the turn of another thread it is given up.
class ExportTurn {
public:
    /// @throws Failure InvalidProcedureCall while another thread exports.
    ExportTurn();

private:
    std::unique_lock<std::recursive_mutex> lock_;
};

/// Releases what exports have left with the module. @returns false, and releases nothing, while an export
/// runs and where it would be on another thread than the objects'.
[[nodiscard]] bool releaseModuleObjects() noexcept;

} // namespace halvane::server
