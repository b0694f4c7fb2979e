#pragma once

#include "base/Value.h"

#include <string>

namespace halvane {

/// Appends the bytes in base64 (the alphabet with + and /, padded with =), without line breaks.
void appendBase64(std::string& out, Bytes bytes);

} // namespace halvane
