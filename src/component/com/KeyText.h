#pragma once

#include "base/Value.h"
#include "base/com/Bstr.h"

#include <string>
#include <string_view>

namespace halvane::server {

// Keys of collections are told apart by every unit of their text. UTF-8 has no place for half a surrogate
// pair: a key has the three bytes there that its number would have. A value never has them, since values are
// written.

[[nodiscard]] std::string keyOf(BSTR sText);
[[nodiscard]] std::wstring textOfKey(std::string_view sKey);

/// What callers name an entry by: a position, or a key.
[[nodiscard]] Value indexOrKeyOf(const VARIANT& variant);

} // namespace halvane::server
