#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::cli {

/// How far an export, or a list of exports, is at a moment.
struct ProgressFacts {
    std::chrono::duration<double> elapsed{}; ///< since the beginning
    std::uint64_t lItems = 0;                ///< written; of a list the exports that ended

    std::string_view sUnit = "rows"; ///< what is counted below
    std::string sOf;                 ///< of the rows, their table; "" where none is read
    std::optional<std::int64_t> lDone;
    std::optional<std::int64_t> lAll;
    std::optional<double> dPerSecond;   ///< lately enough to foretell
    std::optional<double> dSecondsLeft; ///< where all that is to be done is known
};

/// A line for a terminal, of at most 80 letters.
[[nodiscard]] std::string progressLine(const ProgressFacts& facts);

/// One line of JSON, in the form of docs/progress.schema.json.
[[nodiscard]] std::string progressJson(const ProgressFacts& facts);

} // namespace halvane::cli
