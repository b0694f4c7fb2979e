#pragma once

#include "cli/jobs/JobOutcome.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace halvane::cli {

/// What the report says of a list of exports. docs/jobs-report.schema.json is the published form.
class JobsReport {
public:
    /// @param sList absolute.
    JobsReport(std::string sList, std::size_t nJobs) : sList_(std::move(sList)), entries_(nJobs) {}

    struct Entry {
        std::size_t nLine = 0;
        std::string sOutput; ///< as the list has it
        JobOutcome outcome = JobOutcome::NotStarted;
        std::string sReport{}; ///< of the export, JSON; "" where there is none
        std::string sReason{}; ///< why there is none
    };
    /// @param nJob from 0 on.
    void set(std::size_t nJob, const Entry& entry);

    /// With a line break at its end.
    [[nodiscard]] std::string json(const JobCounts& counts, std::chrono::duration<double> duration) const;

private:
    std::string sList_;
    std::vector<std::string> entries_; ///< as they will be written: objects would take many times as much
};

} // namespace halvane::cli
