#include "cli/describe/DescribeCommand.h"

#include "base/Failure.h"
#include "cli/Arguments.h"
#include "cli/ReportFile.h"
#include "cli/StandardOutput.h"
#include "cli/TerminalConsole.h"
#include "cli/TimeTaken.h"
#include "cli/describe/DescriptionPage.h"
#include "run/DescribeRun.h"
#include "run/describe/DescriptionJson.h"
#include "run/describe/MapPage.h"
#include "telling/Outcome.h"
#include "telling/Paths.h"
#include "telling/StandardStreams.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <filesystem>
#include <fstream>

namespace halvane::cli {

namespace {

constexpr const char* sFooter = R"(
Examples:
  halvane describe world.gpkg
      A page of text: layers, fields, domains, workspaces.
  halvane describe world.xml --json > world.json
      The same for a program to read (docs/describe.schema.json).
  halvane describe world.gpkg --html world.html
      One page to look at and to search, with drawings of the layers.
  halvane describe old.gpkg new.gpkg
      What was added, removed and changed between two maps.

What cannot be read says so in its place and changes no exit code.

Exit codes:
  0  described; of two maps: they are made of the same
  1  the two maps differ
  2  arguments refused, or the map cannot be opened
  4  the description cannot be written to standard output, or was cancelled)";

/// Why there can be no page; "" where nothing is in its way.
std::string pageProblem(const std::string& sPath) {
    std::error_code error;
    if (sPath.empty() || std::filesystem::is_directory(sPath, error))
        return fmt::format("\"{}\" is not the path of a file", sPath);
    if (!std::filesystem::is_regular_file(sPath, error) || std::filesystem::file_size(sPath, error) == 0)
        return {};
    std::string sBeginning(64, 0);
    std::ifstream stream(sPath, std::ios::binary);
    stream.read(sBeginning.data(), static_cast<std::streamsize>(sBeginning.size()));
    return beginsAsMapPage(sBeginning)
               ? ""
               : fmt::format("\"{}\" is there already, and is no page of an earlier run; give another name",
                             sPath);
}

ExitCode tell(const std::string& sProblem, ExitCode exitCode, const Console& console) {
    console.failure("halvane: --html: " + sProblem);
    return exitCode;
}

} // namespace

void DescribeCommand::declare(CLI::App& app) {
    app.add_option("MAP", sMap_,
                   "A map document, a QGIS project, or any dataset or folder: a map of all its layers and "
                   "tables")
        ->type_name("")
        ->required();
    app.add_option("NEW", sNew_, "Another map: what is different in it is told")->type_name("");
    auto* const pJson = app.add_flag(
        "--json", bJson_, "JSON in the form of docs/describe.schema.json instead of a page of text");
    addText(app, "--html", sPage_, "FILE", "Write a page of HTML that needs nothing from elsewhere");
    app.get_option("--html")->excludes(pJson)->excludes(app.get_option("NEW"));
    app.add_flag("--allow-connections", bAllowConnections_, sAllowConnections);
    declareVerbosity(app, bQuiet_, bVerbose_);
    app.footer(sFooter);
}

ExitCode DescribeCommand::run() {
    const TerminalConsole console(bQuiet_);
    const TimeTaken time(console, bVerbose_);
    LibraryLines libraryLines;
    const ExitCode code = sPage_ ? writePage(console) : sNew_ ? compare(console) : describe(console);
    for (const auto& sWarning : libraryWarnings(libraryLines.take()))
        console.note("halvane: warning: " + sWarning);
    return code;
}

ExitCode DescribeCommand::describe(const Console& console) const {
    const auto outcome = describeMapAt(sMap_, "MAP", bJson_ ? &descriptionJson : &descriptionPage, hosts_,
                                       console, bAllowConnections_);
    if (outcome.exitCode == ExitCode::Written)
        return writeOut(outcome.sText, "the description", console) ? ExitCode::Written : ExitCode::NotWritten;
    console.failure("halvane: " + outcome.sProblem);
    return outcome.exitCode;
}

ExitCode DescribeCommand::writePage(const Console& console) const {
    const std::string sPath = absolutePath(*sPage_);
    if (const std::string sProblem = pageProblem(sPath); !sProblem.empty())
        return tell(sProblem, ExitCode::InvalidInput, console);
    std::optional<ReportFile> file;
    try {
        file.emplace(sPath);
    } catch (const Failure& failure) {
        return tell(failure.description(), ExitCode::InvalidInput, console);
    }
    const auto outcome = describeMapAt(sMap_, "MAP", &mapPage, hosts_, console, bAllowConnections_,
                                       nSketchPointsOfPage, sPath);
    if (outcome.exitCode != ExitCode::Written) {
        console.failure("halvane: " + outcome.sProblem);
        return outcome.exitCode;
    }
    try {
        const std::string sNotDurable = file->commit(outcome.sText, io::Durability::OnDisk);
        if (!sNotDurable.empty())
            console.note("halvane: warning: --html: " + notDurableWarning(sPath, sNotDurable));
    } catch (const Failure& failure) {
        return tell(failure.description(), ExitCode::NotWritten, console);
    }
    console.result("Wrote " + sPath);
    return ExitCode::Written;
}

ExitCode DescribeCommand::compare(const Console& console) const {
    const auto outcome = compareMapsAt(sMap_, *sNew_, bJson_, hosts_, console, bAllowConnections_);
    if (!outcome.sProblem.empty()) {
        console.failure("halvane: " + outcome.sProblem);
        return outcome.exitCode;
    }
    if (!writeOut(outcome.sText, "the differences", console))
        return ExitCode::NotWritten;
    if (outcome.exitCode == ExitCode::Written)
        console.note("halvane: the maps are made of the same");
    return outcome.exitCode;
}

} // namespace halvane::cli
