#include "cli/describe/DescribeCommand.h"

#include "cli/Arguments.h"
#include "cli/StandardOutput.h"
#include "cli/TerminalConsole.h"
#include "cli/describe/DescriptionPage.h"
#include "run/DescribeRun.h"
#include "run/describe/DescriptionJson.h"
#include "telling/Outcome.h"
#include "telling/StandardStreams.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace halvane::cli {

namespace {

constexpr const char* sFooter = R"(
Examples:
  halvane describe world.gpkg
      A page of text: layers, fields, domains, workspaces.
  halvane describe world.xml --json > world.json
      The same for a program to read (docs/describe.schema.json).
  halvane describe old.gpkg new.gpkg
      What was added, removed and changed between two maps.

What cannot be read says so in its place and changes no exit code.

Exit codes:
  0  described; of two maps: they are made of the same
  1  the two maps differ
  2  arguments refused, or the map cannot be opened
  4  the description cannot be written to standard output, or was cancelled)";

} // namespace

void DescribeCommand::declare(CLI::App& app) {
    app.add_option("MAP", sMap_,
                   "A map document, a QGIS project, or any dataset or folder: a map of all its layers and "
                   "tables")
        ->type_name("")
        ->required();
    app.add_option("NEW", sNew_, "Another map: what is different in it is told")->type_name("");
    app.add_flag("--json", bJson_, "JSON in the form of docs/describe.schema.json instead of a page of text");
    app.add_flag("--allow-connections", bAllowConnections_, sAllowConnections);
    app.footer(sFooter);
}

ExitCode DescribeCommand::run() {
    const TerminalConsole console(false);
    LibraryLines libraryLines;
    const ExitCode code = sNew_ ? compare(console) : describe(console);
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
