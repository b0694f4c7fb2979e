#include "cli/ExportCommand.h"

#include "cli/Crashes.h"
#include "cli/DocumentOutput.h"
#include "cli/ReportWriting.h"
#include "cli/TerminalConsole.h"
#include "cli/TimeTaken.h"
#include "cli/jobs/JobsRun.h"
#include "cli/progress/OpenProgress.h"
#include "run/ExportRun.h"
#include "run/Report.h"
#include "telling/StandardStreams.h"

#include <fmt/format.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>

namespace halvane::cli {

namespace {

using Clock = std::chrono::steady_clock;

std::string fileOfStandardOutput() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/fd/1", error);
    return !error && std::filesystem::is_regular_file(path, error) ? path.string() : "";
}

void tellSources(const Sources& sources, const Console& console) {
    std::set<std::string> all(sources.files.begin(), sources.files.end());
    all.insert(sources.data.begin(), sources.data.end());
    for (const auto& sPath : all)
        console.note(fmt::format("halvane: read \"{}\"", sPath));
    if (sources.bElsewhere)
        console.note("halvane: read what no local file holds: of a server, an address, standard input or a "
                     "processor");
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

void ExportCommand::declare(CLI::App& app) {
    declareExportArguments(app, arguments_);
    declareJobsArguments(app, jobs_);
}

ExitCode ExportCommand::run() {
    return jobs_.sList ? JobsRun(jobs_, arguments_).run() : exportOne();
}

ExitCode ExportCommand::exportOne() {
    const auto started = Clock::now();
    takeStandardStreams();
    const TerminalConsole console(arguments_.bQuiet);
    const TimeTaken time(console, arguments_.bVerbose);
    std::unique_ptr<ReportFile> pReport;
    if (arguments_.sReport) {
        pReport = openReport(arguments_, console);
        if (pReport == nullptr)
            return ExitCode::InvalidInput;
    }
    LibraryLines libraryLines;
    const auto pProgress = openProgress(arguments_);
    std::optional<DocumentOutput> documentOutput;
    if (arguments_.bWritesStandardOutput)
        documentOutput.emplace();
    ExportRun run(arguments_, {hosts_, console, *pProgress, &libraryLines,
                               documentOutput ? &*documentOutput : nullptr, &crashesLeaveADocument});
    run.run();
    if (arguments_.bVerbose)
        tellSources(run.factsWithSources().sources, console);
    if (pReport == nullptr || !run.mayReport())
        return run.facts().exitCode;
    ReportFacts& facts = run.factsWithSources();
    facts.duration = Clock::now() - started;
    return writeReport(*pReport, reportJson(facts, run.log()), arguments_, facts.exitCode, console);
}

} // namespace halvane::cli
