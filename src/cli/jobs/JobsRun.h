#pragma once

#include "cli/TerminalConsole.h"
#include "cli/jobs/JobList.h"
#include "cli/jobs/JobOutcome.h"
#include "cli/jobs/JobState.h"
#include "cli/jobs/JobsArguments.h"
#include "cli/jobs/JobsReport.h"
#include "cli/jobs/ProcessPool.h"
#include "telling/Progress.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::cli {

/// The exports of a list, each in a process of its own, with one report. One that fails stops no other.
class JobsRun {
public:
    /// @param jobs,common borrowed; `common` holds for each export.
    JobsRun(const JobsArguments& jobs, const ExportArguments& common);

    /// Call once.
    [[nodiscard]] ExitCode run();

private:
    [[nodiscard]] std::vector<OwnFile> ownFiles() const;
    [[nodiscard]] bool readList();
    [[nodiscard]] bool openState();
    void runJobs();
    [[nodiscard]] std::optional<ProcessPool::Task> nextTask();
    void ended(std::size_t nJob, ChildEnd end);
    void tell(std::size_t nJob, const ChildEnd& end);
    void settle(std::size_t nJob, JobOutcome outcome, const std::string& sReport, const std::string& sReason);
    void tellProblem(const std::string& sProblem);

    const JobsArguments& arguments_;
    const ExportArguments& common_;
    TerminalConsole console_;
    std::string sStatePath_;
    JobList list_;
    std::optional<JobState> state_;
    std::optional<JobsReport> report_; ///< where one is asked for
    std::vector<timespec> begun_;
    std::size_t nNext_ = 0;
    JobCounts counts_;
    std::unique_ptr<Progress> pProgress_;
};

} // namespace halvane::cli
