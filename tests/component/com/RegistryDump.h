#pragma once

#include <windows.h>

#include <set>
#include <string>

namespace halvane::client {

/// All keys and values that programs keep in the registry, for the machine and the current user, a line each.
[[nodiscard]] std::set<std::wstring> registryDump();

} // namespace halvane::client
