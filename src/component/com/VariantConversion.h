#pragma once

#include "base/com/Variant.h"

namespace halvane::server {

/// The value as another plain type. @throws Failure as the system converts.
[[nodiscard]] com::Variant convertedTo(VARTYPE vt, const VARIANT& source, LCID lcid = LOCALE_USER_DEFAULT);

/// 0, no, an empty text or no object.
[[nodiscard]] com::Variant defaultOf(VARTYPE vt);

} // namespace halvane::server
