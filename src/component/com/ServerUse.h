#pragma once

#include "base/com/Windows.h"

#include <string>

namespace halvane::server {

/// Keeps the library in memory for as long as it lives; part of every object that clients hold.
class ServerUse {
public:
    ServerUse() noexcept;
    ServerUse(const ServerUse&) = delete;
    ServerUse& operator=(const ServerUse&) = delete;
    ~ServerUse();
};

/// A client's own lock, which it ends by the opposite call.
void lockServer(bool bLock) noexcept;

/// Whether a client holds an object or a lock.
[[nodiscard]] bool serverInUse() noexcept;

/// The library itself.
[[nodiscard]] HMODULE serverModule() noexcept;
/// The library's file. @throws Failure.
[[nodiscard]] std::wstring serverPath();

} // namespace halvane::server
