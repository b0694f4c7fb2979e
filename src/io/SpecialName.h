#pragma once

#include <string>
#include <string_view>

namespace halvane::io {

/// Why a file of that path would not be one by that name on Windows: its name leads to a device or to a
/// stream of another file, or the system would leave out its end. "" where it would.
[[nodiscard]] std::string whySpecial(std::string_view sPath);

} // namespace halvane::io
