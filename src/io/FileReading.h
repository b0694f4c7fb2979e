#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace halvane::io {

/// What a name stands for could not be read; `bTooLarge` tells that it goes on beyond the limit.
struct ReadProblem {
    std::string sReason; ///< one line that names the file; "" when there is no problem
    bool bTooLarge = false;

    explicit operator bool() const noexcept { return !sReason.empty(); }
};

/// Reads a file whole, up to `nLimit` bytes. `sPath` is in the platform's form.
[[nodiscard]] ReadProblem readFile(const std::string& sPath, std::size_t nLimit, std::string& sContent);

/// Reads what an "http://" or "https://" URL names, up to `nLimit` bytes, within httpTimeLimit seconds. A
/// few redirections, to such URLs only, are followed.
[[nodiscard]] ReadProblem readUrl(const std::string& sUrl, std::size_t nLimit, std::string& sContent);

inline constexpr long httpTimeLimit = 30;

} // namespace halvane::io
