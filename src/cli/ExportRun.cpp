#include "cli/ExportRun.h"

#include "cli/LogListing.h"
#include "cli/Text.h"
#include "component/clsExport.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace halvane::cli {

namespace {

bool somethingWasNotFound(const ExportLog& log) {
    return std::any_of(log.records().begin(), log.records().end(), [](const auto& entry) {
        return std::any_of(entry.second.events.begin(), entry.second.events.end(),
                           [](const NodeEvent& event) { return event.notice == Notice::ResolvedToNothing; });
    });
}

} // namespace

ExportRun::ExportRun(const ExportArguments& arguments, const Console& console)
    : arguments_(arguments), console_(console),
      progress_(stderr, arguments.bShowProgress && !arguments.bQuiet && terminalOnStandardError()),
      log_(progress_) {}

void ExportRun::run() {
    auto problems = openInputs(arguments_, inputs_);
    facts_.sControl = inputs_.sControlPath;
    facts_.sMap = inputs_.sMapPath;
    facts_.warnings = inputs_.warnings;
    if (!problems.empty())
        refuse(std::move(problems));
    else
        exportDocument();
}

void ExportRun::refuse(std::vector<std::string> problems) {
    for (const auto& sProblem : problems)
        console_.failure("halvane: " + sProblem);
    facts_.problems = std::move(problems);
    facts_.exitCode = ExitCode::InvalidInput;
}

void ExportRun::exportDocument() {
    ExportOptions options;
    options.lItemLimit = arguments_.lItemLimit;
    options.bIgnoreComments = true;
    options.pObserver = &log_;
    clsExport exporter(inputs_.pHost, options);
    std::int32_t lErrNum = 0;
    std::string sErrMsg;
    bStarted_ = true;
    exporter.Export2XML(inputs_.pMapDocument, inputs_.sControlPath, inputs_.output.sFolder,
                        inputs_.output.sName, inputs_.oExternalDocument, inputs_.sNodePath, lErrNum, sErrMsg);
    progress_.clear();
    settleOutcome(sErrMsg);
    askHostWhy();
    tell();
}

void ExportRun::settleOutcome(const std::string& sErrMsg) {
    if (log_.saved()) {
        facts_.sDocument = inputs_.output.path();
        facts_.exitCode = log_.failures() == 0 ? ExitCode::Written : ExitCode::WrittenIncomplete;
        return;
    }
    facts_.exitCode = ExitCode::NotWritten;
    facts_.bCancelled = log_.givenUp();
    const std::string& sReason = log_.notSavedReason().empty() ? sErrMsg : log_.notSavedReason();
    facts_.problems.push_back(facts_.bCancelled ? "cancelled"
                              : sReason.empty() ? "the export ended without a reason"
                                                : sReason);
}

/// The engine is told that a table is not there, not why; the host knows.
void ExportRun::askHostWhy() {
    if (inputs_.pMapDocument == nullptr || facts_.bCancelled || !somethingWasNotFound(log_))
        return;
    try {
        for (const auto& sProblem : inputs_.pHost->problems(inputs_.pMapDocument))
            facts_.warnings.push_back(fmt::format("--map: {}", sProblem));
    } catch (const Failure& failure) {
        facts_.warnings.push_back(fmt::format("--map: {}", failure.description()));
    }
}

void ExportRun::tell() const {
    for (const auto& sWarning : facts_.warnings)
        console_.note("halvane: warning: " + sWarning);
    listOnConsole(log_, {arguments_.sControl, inputs_.pMapDocument != nullptr}, console_);
    if (!log_.saved()) {
        tellNotWritten();
        return;
    }
    tellRepairs();
    if (facts_.exitCode == ExitCode::WrittenIncomplete)
        console_.note(fmt::format("halvane: {} failed; the document is incomplete",
                                  counted(failedNodes(log_), "control node")));
    console_.result(fmt::format("Wrote {} ({})", facts_.sDocument, counted(log_.items(), "item")));
}

void ExportRun::tellNotWritten() const {
    const std::string sPath = inputs_.output.path();
    const std::string& sReason = facts_.problems.back();
    if (sReason.find(sPath) == std::string::npos)
        console_.failure(fmt::format("halvane: nothing was written to \"{}\": {}", sPath, sReason));
    else
        console_.failure("halvane: nothing was written: " + sReason);
}

void ExportRun::tellRepairs() const {
    const auto& repairs = log_.repairs();
    if (repairs.dropped > 0)
        console_.note(fmt::format("halvane: warning: {} that XML forbids {} dropped from the data",
                                  counted(repairs.dropped, "character"),
                                  repairs.dropped == 1 ? "was" : "were"));
    if (repairs.replaced > 0)
        console_.note(fmt::format("halvane: warning: {} of the data {} no UTF-8 and {} replaced by U+FFFD",
                                  counted(repairs.replaced, "piece"), repairs.replaced == 1 ? "is" : "are",
                                  repairs.replaced == 1 ? "was" : "were"));
}

} // namespace halvane::cli
