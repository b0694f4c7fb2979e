#pragma once

#include "base/com/Windows.h"

namespace halvane::server {

enum class RegisterFor { Machine, User };

/// Writes the classes, the interfaces and the type library into the registry; a failure takes back what was
/// written.
/// @throws Failure the system's own code.
void registerServer(RegisterFor whom);

/// Removes all that registerServer writes, and nothing else: a key that others use too stays, one that was
/// left empty goes. What the library of the other bitness needs as well stays while that one is registered.
/// What is missing already is no failure.
/// @throws Failure the system's own code.
void unregisterServer(RegisterFor whom);

} // namespace halvane::server
