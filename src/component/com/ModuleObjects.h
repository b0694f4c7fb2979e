#pragma once

namespace halvane::server {

/// Gives up what the export module holds of others' objects without releasing it: at a moment, or on a
/// thread, where they cannot be called. The module's texts stay.
void abandonModuleObjects() noexcept;

/// Whether an export that did not run to its end has left objects with the module.
[[nodiscard]] bool moduleHoldsObjects() noexcept;

} // namespace halvane::server
