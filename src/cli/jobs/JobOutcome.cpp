#include "cli/jobs/JobOutcome.h"

#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace halvane::cli {

namespace {

/// In the order of the enumeration.
constexpr std::array<std::string_view, 8> aWords{"written",     "skipped", "incomplete", "refused",
                                                 "not written", "crashed", "cancelled",  "not started"};
constexpr auto firstWithoutDocument = JobOutcome::Refused;

} // namespace

std::string_view wordOf(JobOutcome outcome) {
    return aWords.at(static_cast<std::size_t>(outcome));
}

std::size_t JobCounts::all() const {
    return std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
}

ExitCode JobCounts::exitCode() const {
    const auto* const pFirst = counts_.begin() + static_cast<std::ptrdiff_t>(firstWithoutDocument);
    if (std::any_of(pFirst, counts_.end(), [](std::size_t nCount) { return nCount > 0; }))
        return ExitCode::NotWritten;
    return of(JobOutcome::Incomplete) > 0 ? ExitCode::WrittenIncomplete : ExitCode::Written;
}

std::string JobCounts::sentence() const {
    std::string sCounts;
    for (std::size_t i = 0; i < counts_.size(); ++i)
        if (counts_.at(i) > 0)
            sCounts += fmt::format("{} {} {}", sCounts.empty() ? ":" : ",", counts_.at(i), aWords.at(i));
    return counted(all(), "export") + sCounts;
}

} // namespace halvane::cli
