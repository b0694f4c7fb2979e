#include "cli/PreviewCommand.h"

#include "cli/StandardOutput.h"
#include "cli/TerminalConsole.h"
#include "cli/TimeTaken.h"
#include "cli/progress/OpenProgress.h"
#include "run/PreviewRun.h"
#include "telling/StandardStreams.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace halvane::cli {

namespace {

constexpr std::uint64_t nMostItems = 1000;

constexpr const char* sPreviewExamples = R"(
Examples:
  halvane preview --map world.gpkg control.xml
      The first 3 items of each repeated node, with the line of the control file beside each element.
  halvane preview --map world.gpkg -n 1 --explain control.xml
      One item of each, and for each element where its value comes from, or why there is none.

The arguments are those of the export that the control file is meant for. No file is written.

Exit codes:
  0  shown, and nothing failed
  2  arguments refused, or the control file or the map cannot be read
  3  shown, but some control node failed
  4  there is no document, or it cannot be shown, or the preview was cancelled)";

} // namespace

void PreviewCommand::declare(CLI::App& app) {
    app.footer(sPreviewExamples);
    declareControlArguments(app, arguments_);
    app.add_option("-n,--items", nItems_, "How many items of each repeated node are shown, 1 to 1000; else 3")
        ->type_name("N")
        ->check(CLI::Range(std::uint64_t{1}, nMostItems));
    app.add_flag("--explain", bExplains_, "Tell where each value comes from, and why nodes wrote nothing");
    declareVerbosity(app, arguments_.bQuiet, arguments_.bVerbose);
}

ExitCode PreviewCommand::run() {
    takeControlOfStandardInput(arguments_);
    const TerminalConsole console(arguments_.bQuiet);
    const TimeTaken time(console, arguments_.bVerbose);
    LibraryLines libraryLines;
    const auto pProgress = openProgress(arguments_);
    const PreviewOutcome outcome = runPreview(arguments_, {hosts_, console, *pProgress, &libraryLines},
                                              {nItems_, colouredStandardOutput(), bExplains_});
    return writeOut(outcome.sPage, "the preview", console) ? outcome.exitCode : ExitCode::NotWritten;
}

} // namespace halvane::cli
