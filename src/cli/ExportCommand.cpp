#include "cli/ExportCommand.h"

#include "base/Failure.h"
#include "cli/Crashes.h"
#include "cli/DocumentOutput.h"
#include "cli/ProgressLine.h"
#include "cli/ReportFile.h"
#include "cli/TerminalConsole.h"
#include "run/ExportRun.h"
#include "run/Overwriting.h"
#include "run/Report.h"
#include "telling/Outcome.h"
#include "telling/Paths.h"
#include "telling/StandardStreams.h"

#include <fmt/format.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

namespace halvane::cli {

namespace {

using Clock = std::chrono::steady_clock;

std::string fileOfStandardOutput() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/fd/1", error);
    return !error && std::filesystem::is_regular_file(path, error) ? path.string() : "";
}

/// @returns nothing, with the reason told, when the report cannot be written.
std::unique_ptr<ReportFile> openReport(const ExportArguments& arguments, const Console& console) {
    const std::string& sReport = *arguments.sReport;
    const std::string sPath = absolutePath(sReport);
    std::error_code error;
    if (sPath.empty() || std::filesystem::is_directory(sPath, error)) {
        console.failure(fmt::format("halvane: --report: \"{}\" is not the path of a file", sReport));
        return nullptr;
    }
    if (const auto problems = checkReportReplacesNothing(arguments); !problems.empty()) {
        for (const auto& sProblem : problems)
            console.failure("halvane: " + sProblem);
        return nullptr;
    }
    try {
        return std::make_unique<ReportFile>(sPath);
    } catch (const Failure& failure) {
        console.failure(fmt::format("halvane: --report: {}", failure.description()));
        return nullptr;
    }
}

/// @returns what the program returns: a document without the report asked for is not all that was asked for.
ExitCode writeReport(ReportFile& file, const std::string& sReport, io::Durability durability,
                     const ReportFacts& facts, const ExportLog* pLog, const Console& console) {
    try {
        const std::string sNotDurable = file.commit(reportJson(facts, pLog), durability);
        if (!sNotDurable.empty())
            console.note("halvane: warning: --report: " + notDurableWarning(sReport, sNotDurable));
        return facts.exitCode;
    } catch (const Failure& failure) {
        console.failure(fmt::format("halvane: --report: {}", failure.description()));
        return facts.exitCode == ExitCode::Written ? ExitCode::WrittenIncomplete : facts.exitCode;
    }
}

} // namespace

void ExportCommand::takeStandardStreams() {
    takeControlOfStandardInput(arguments_);
    if (arguments_.sOutput == sStream) {
        arguments_.sOutput = sStandardOutput;
        arguments_.bWritesStandardOutput = true;
        arguments_.sFileOfStandardOutput = fileOfStandardOutput();
    }
}

ExitCode ExportCommand::run() {
    const auto started = Clock::now();
    takeStandardStreams();
    const TerminalConsole console(arguments_.bQuiet);
    std::unique_ptr<ReportFile> pReport;
    if (arguments_.sReport) {
        pReport = openReport(arguments_, console);
        if (pReport == nullptr)
            return ExitCode::InvalidInput;
    }
    LibraryLines libraryLines;
    ProgressLine progress(standardError(),
                          arguments_.bShowProgress && !arguments_.bQuiet && terminalOnStandardError());
    std::optional<DocumentOutput> documentOutput;
    if (arguments_.bWritesStandardOutput)
        documentOutput.emplace();
    ExportRun run(arguments_, {hosts_, console, progress, &libraryLines,
                               documentOutput ? &*documentOutput : nullptr, &crashesLeaveADocument});
    run.run();
    if (pReport == nullptr || !run.mayReport())
        return run.facts().exitCode;
    run.facts().duration = Clock::now() - started;
    return writeReport(*pReport, absolutePath(*arguments_.sReport), arguments_.durability, run.facts(),
                       run.log(), console);
}

} // namespace halvane::cli
