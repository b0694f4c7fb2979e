#pragma once

#include "base/com/ComPtr.h"

namespace halvane::server {

/// The description of an interface in the library's own type library, registered or not.
/// @throws Failure when it cannot be read.
[[nodiscard]] com::ComPtr<ITypeInfo> typeInfoOf(REFIID iid);

/// Gives back what was read; the next question reads anew.
void releaseTypeLibrary() noexcept;

} // namespace halvane::server
