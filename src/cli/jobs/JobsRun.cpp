#include "cli/jobs/JobsRun.h"

#include "base/Failure.h"
#include "cli/ReportWriting.h"
#include "cli/TypedArguments.h"
#include "cli/progress/OpenProgress.h"
#include "io/ReplacingFile.h"
#include "telling/Interruption.h"
#include "telling/Paths.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

namespace halvane::cli {

namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;

std::string statePath(const JobsArguments& arguments) {
    if (arguments.sState)
        return absolutePath(*arguments.sState);
    const std::string sShard =
        arguments.shard ? fmt::format(".{}-of-{}", arguments.shard->nNumber, arguments.shard->nShards) : "";
    return absolutePath(*arguments.sList) + sShard + ".state";
}

JobOutcome outcomeOf(const ChildEnd& end, const Json& report) {
    const bool bCancelled =
        interruptionRequested() || (report.is_object() && report.value("outcome", "") == "cancelled");
    switch (end.lExitCode) {
    case static_cast<int>(ExitCode::Written):
        return JobOutcome::Written;
    case static_cast<int>(ExitCode::WrittenIncomplete):
        return JobOutcome::Incomplete;
    case static_cast<int>(ExitCode::InvalidInput):
        return JobOutcome::Refused;
    case static_cast<int>(ExitCode::NotWritten):
        return bCancelled ? JobOutcome::Cancelled : JobOutcome::NotWritten;
    default:
        return bCancelled ? JobOutcome::Cancelled : JobOutcome::Crashed;
    }
}

/// What no line of the export itself tells. "" where it told all.
std::string reasonOf(const ChildEnd& end, JobOutcome outcome) {
    if (outcome != JobOutcome::Crashed)
        return {};
    return end.lSignal != 0
               ? fmt::format("the export was ended by signal {} ({})", end.lSignal, ::strsignal(end.lSignal))
               : fmt::format("the export ended with exit code {}", end.lExitCode);
}

JobResult resultOf(const Json& report) {
    const Json& sources = report.at("sources");
    return {report.at("document"), sources.at("files"), sources.at("data"), sources.at("elsewhere")};
}

template<class Tell>
void forEachLine(std::string_view sText, const Tell& tell) {
    while (!sText.empty()) {
        const std::size_t nEnd = std::min(sText.find('\n'), sText.size());
        tell(sText.substr(0, nEnd));
        sText.remove_prefix(std::min(nEnd + 1, sText.size()));
    }
}

} // namespace

JobsRun::JobsRun(const JobsArguments& jobs, const ExportArguments& common)
    : arguments_(jobs), common_(common), console_(common.bQuiet), sStatePath_(statePath(jobs)),
      pProgress_(openProgress(common, "exports")) {}

ExitCode JobsRun::run() {
    const auto started = Clock::now();
    if (!readList())
        return ExitCode::InvalidInput;
    std::unique_ptr<ReportFile> pReport;
    if (common_.sReport) {
        pReport = openReport(common_, console_);
        if (pReport == nullptr)
            return ExitCode::InvalidInput;
        report_.emplace(absolutePath(*arguments_.sList), list_.jobs.size());
    }
    if (!openState())
        return ExitCode::InvalidInput;
    runJobs();
    if (const std::string sProblem = state_ ? state_->save() : ""; !sProblem.empty())
        tellProblem(sProblem);
    console_.result(counts_.sentence());
    return pReport == nullptr ? counts_.exitCode()
                              : writeReport(*pReport, report_->json(counts_, Clock::now() - started), common_,
                                            counts_.exitCode(), console_);
}

std::vector<OwnFile> JobsRun::ownFiles() const {
    std::vector<OwnFile> files{{"the list itself", absolutePath(*arguments_.sList)},
                               {"the state of the list", sStatePath_}};
    if (common_.sReport)
        files.push_back({"the report", absolutePath(*common_.sReport)});
    return files;
}

bool JobsRun::readList() {
    std::vector<std::string> problems;
    list_ = readJobList(*arguments_.sList, common_, ownFiles(), problems);
    for (const auto& sProblem : problems)
        console_.failure("halvane: " + sProblem);
    if (arguments_.shard)
        keepShard(*arguments_.shard, list_);
    begun_.resize(list_.jobs.size());
    return problems.empty();
}

bool JobsRun::openState() {
    state_.emplace(sStatePath_, list_.written);
    if (const std::string sProblem = state_->load(); !sProblem.empty()) {
        console_.failure("halvane: --state: " + sProblem);
        return false;
    }
    try {
        static_cast<void>(io::ReplacingFile::create(sStatePath_));
        return true;
    } catch (const Failure& failure) {
        state_.reset();
        const bool bNeeded = arguments_.bResume || arguments_.sState;
        if (bNeeded)
            console_.failure("halvane: --state: " + failure.description());
        else
            tellProblem(failure.description());
        return !bNeeded;
    }
}

void JobsRun::tellProblem(const std::string& sProblem) {
    console_.note(fmt::format("halvane: warning: what is done is not kept for --resume: {}", sProblem));
}

void JobsRun::runJobs() {
    pProgress_->setRows([this] {
        return host::RowsUnderWay{1, "", static_cast<std::int64_t>(counts_.all()),
                                  static_cast<std::int64_t>(list_.jobs.size())};
    });
    ProcessPool pool(arguments_.nProcesses.value_or(std::max(1U, std::thread::hardware_concurrency())));
    pool.run([this] { return nextTask(); },
             [this](std::size_t nJob, ChildEnd end) { ended(nJob, std::move(end)); });
    for (; nNext_ < list_.jobs.size(); ++nNext_)
        settle(nNext_, JobOutcome::NotStarted, "", "");
    pProgress_->clear();
}

std::optional<ProcessPool::Task> JobsRun::nextTask() {
    for (; nNext_ < list_.jobs.size(); ++nNext_) {
        const Job& job = list_.jobs[nNext_];
        const std::string sWhy = arguments_.bResume ? state_->whyToDo(job) : "";
        if (common_.bVerbose && !sWhy.empty())
            console_.note(fmt::format("{}:{}: runs, since {}", *arguments_.sList, job.nLine, sWhy));
        if (!arguments_.bResume || !sWhy.empty())
            break;
        settle(nNext_, JobOutcome::Skipped, "", "");
    }
    if (nNext_ == list_.jobs.size())
        return std::nullopt;
    begun_[nNext_] = nowForFiles();
    return ProcessPool::Task{nNext_, typedExport(list_.jobs[nNext_++].arguments)};
}

void JobsRun::ended(std::size_t nJob, ChildEnd end) {
    const Json report = Json::parse(end.sReport, nullptr, false);
    const JobOutcome outcome = outcomeOf(end, report);
    const std::string sReason = reasonOf(end, outcome);
    if (!sReason.empty())
        end.sErr += "halvane: " + sReason + "\n";
    pProgress_->makeRoom();
    tell(nJob, end);
    settle(nJob, outcome, end.sReport, sReason);
    if (!state_)
        return;
    if (outcome == JobOutcome::Written && report.is_object())
        state_->add(list_.jobs[nJob], resultOf(report), begun_[nJob]);
    else
        state_->forget(list_.jobs[nJob]);
    static_cast<void>(state_->saveSometimes(JobState::Clock::now())); // what lasts is told at the end
}

void JobsRun::tell(std::size_t nJob, const ChildEnd& end) {
    const std::string sPrefix = fmt::format("{}:{}: ", *arguments_.sList, list_.jobs[nJob].nLine);
    forEachLine(end.sErr, [&](std::string_view sLine) { console_.failure(sPrefix + std::string(sLine)); });
    forEachLine(end.sOut, [&](std::string_view sLine) { console_.result(sPrefix + std::string(sLine)); });
}

void JobsRun::settle(std::size_t nJob, JobOutcome outcome, const std::string& sReport,
                     const std::string& sReason) {
    counts_.add(outcome);
    const Job& job = list_.jobs[nJob];
    if (report_)
        report_->set(nJob, {job.nLine, job.arguments.sOutput, outcome, sReport, sReason});
    pProgress_->update(counts_.all());
}

} // namespace halvane::cli
