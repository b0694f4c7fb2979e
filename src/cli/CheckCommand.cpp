#include "cli/CheckCommand.h"

#include "cli/StandardOutput.h"
#include "cli/TerminalConsole.h"
#include "cli/TimeTaken.h"
#include "cli/progress/OpenProgress.h"
#include "run/check/CheckForms.h"
#include "telling/StandardStreams.h"
#include "telling/Text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <vector>

namespace halvane::cli {

namespace {

constexpr const char* sCheckExamples = R"(
Examples:
  halvane check --map world.gpkg control.xml
      What the control file asks for and the map lacks, and what does not do what it seems to.
  halvane check control.xml
      What the control file shows by itself.
  halvane check --map world.gpkg --sarif control.xml > findings.sarif
      For programs that show findings beside the text.

The arguments are those of the export that the control file is meant for. No document is written.

Exit codes:
  0  nothing is wrong; notes may be told
  1  there are warnings or errors
  2  arguments refused, or the control file or the map cannot be read
  4  cancelled, or the findings cannot be written)";

void tellSummary(const CheckOutcome& outcome, const std::string& sControl, const Console& console) {
    std::vector<std::string> counts;
    for (const auto severity : {CheckSeverity::Error, CheckSeverity::Warning, CheckSeverity::Note}) {
        const auto lCount = std::ranges::count(outcome.findings, severity,
                                               [](const auto& finding) { return finding.pRule->severity; });
        if (lCount > 0)
            counts.push_back(counted(static_cast<std::uint64_t>(lCount), wordOf(severity)));
    }
    console.note(fmt::format("halvane: {}: {}{}", sControl,
                             counts.empty() ? "nothing is wrong" : fmt::format("{}", fmt::join(counts, ", ")),
                             outcome.bWithoutMap ? "; what it asks of a map was not checked: give a map with "
                                                   "--map"
                                                 : ""));
}

} // namespace

void CheckCommand::declare(CLI::App& app) {
    app.footer(sCheckExamples);
    declareControlArguments(app, arguments_);
    auto* const pJson = app.add_flag("--json", bJson_, "JSON in the form of docs/check.schema.json");
    app.add_flag("--sarif", bSarif_, "SARIF 2.1.0")->excludes(pJson);
    declareVerbosity(app, arguments_.bQuiet, arguments_.bVerbose);
}

ExitCode CheckCommand::run() {
    takeControlOfStandardInput(arguments_);
    const TerminalConsole console(arguments_.bQuiet);
    const TimeTaken time(console, arguments_.bVerbose);
    LibraryLines libraryLines;
    const auto pProgress = openProgress(arguments_);
    const CheckOutcome outcome = runCheck(arguments_, {hosts_, *pProgress, &libraryLines});
    pProgress->clear();
    for (const auto& sWarning : outcome.warnings)
        console.note("halvane: warning: " + sWarning);
    for (const auto& sProblem : outcome.problems)
        console.failure("halvane: " + sProblem);
    const CheckForm form = bSarif_ ? &checkSarif : bJson_ ? &checkJson : &checkLines;
    if (!writeOut(form(outcome, arguments_.sControl), "the findings", console))
        return ExitCode::NotWritten;
    if (outcome.problems.empty())
        tellSummary(outcome, arguments_.sControl, console);
    return outcome.exitCode;
}

} // namespace halvane::cli
