#pragma once

#include "base/Failure.h"
#include "base/com/Windows.h"

#include <string_view>

namespace halvane::server {

/// Leaves a failure's description for the caller on this thread. @returns the code to return for it.
[[nodiscard]] HRESULT raise(const Failure& failure, REFIID iid, std::string_view sSource) noexcept;

} // namespace halvane::server
