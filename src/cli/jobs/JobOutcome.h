#pragma once

#include "telling/ExitCodes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::cli {

/// What became of an export of a list.
enum class JobOutcome : std::uint8_t {
    Written,
    Skipped, ///< it was done, and nothing has changed since
    Incomplete,
    Refused,
    NotWritten,
    Crashed,
    Cancelled,
    NotStarted, ///< the list was cancelled before its turn
};

/// How many exports came to what.
class JobCounts {
public:
    void add(JobOutcome outcome) { ++counts_.at(static_cast<std::size_t>(outcome)); }
    [[nodiscard]] std::size_t of(JobOutcome outcome) const {
        return counts_.at(static_cast<std::size_t>(outcome));
    }
    [[nodiscard]] std::size_t all() const;
    /// The worst of all: NotWritten where a document is missing, WrittenIncomplete where one is incomplete.
    [[nodiscard]] ExitCode exitCode() const;
    /// "12 exports: 10 written, 2 refused".
    [[nodiscard]] std::string sentence() const;

private:
    std::array<std::size_t, 8> counts_{};
};

/// As messages and the report say it: "not written".
[[nodiscard]] std::string_view wordOf(JobOutcome outcome);

} // namespace halvane::cli
