#pragma once

#include "base/Failure.h"

#include <string>
#include <string_view>

namespace halvane::io {

/// Why a file of that path would not be one by that name on Windows: its name leads to a device or to a
/// stream of another file, or the system would leave out its end. "" where it would, and on systems that take
/// every name as it stands.
[[nodiscard]] std::string whySpecial(std::string_view sPath);

/// @throws Failure PathFileAccess, with the path, for one that is special.
inline void requirePlainName(std::string_view sPath) {
    if (const std::string sWhy = whySpecial(sPath); !sWhy.empty())
        throw Failure(FailureNumber::PathFileAccess, std::string(sPath) + ": " + sWhy);
}

} // namespace halvane::io
