#include "cli/InitCommand.h"

#include "cli/Arguments.h"
#include "cli/StandardOutput.h"
#include "cli/TerminalConsole.h"
#include "cli/TimeTaken.h"
#include "io/PosixFile.h"
#include "telling/Outcome.h"
#include "telling/StandardStreams.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

namespace halvane::cli {

namespace {

constexpr const char* sInitExamples = R"(
Examples:
  halvane init world.gpkg -o control.xml
      A control file for all layers and tables, with comments.
  halvane init world.gpkg --layer Cities -o cities.xml
      One layer alone.
  halvane init world.gpkg --layer Cities --schema gpx.xsd -o gpx.xml
      The elements that a schema prescribes, to be filled from the layer's fields.

A file that is there already is left alone.

Exit codes:
  0  made
  2  arguments refused, or the map or the schema cannot be read, or FILE is there already
  4  the control file cannot be written, or it was cancelled)";

} // namespace

void InitCommand::declare(CLI::App& app) {
    app.footer(sInitExamples);
    app.add_option("MAP", arguments_.sMap,
                   "A map document, a QGIS project, or any dataset or folder: a map of all its layers and "
                   "tables")
        ->type_name("")
        ->required();
    app.add_flag("--allow-connections", arguments_.bAllowConnections, sAllowConnections);
    addRepeatable(app, "--layer", arguments_.layers, "NAME", "A layer or table that it is about; repeatable");
    addText(app, "--schema", arguments_.sSchema, "FILE.xsd",
            "An XML Schema: the control file is for documents of it");
    addText(app, "--schema-catalog", arguments_.sSchemaCatalog, "CATALOG",
            "An XML catalogue: local files for addresses that the schema imports");
    app.add_option("-o,--output", sOutput_, "Where to write it; without it, standard output")
        ->type_name("FILE");
    declareVerbosity(app, bQuiet_, bVerbose_);
}

ExitCode InitCommand::run() {
    const TerminalConsole console(bQuiet_);
    const TimeTaken time(console, bVerbose_);
    LibraryLines libraryLines;
    const ExitCode code = make(console);
    for (const auto& sWarning : libraryWarnings(libraryLines.take()))
        console.note("halvane: warning: " + sWarning);
    return code;
}

ExitCode InitCommand::make(const Console& console) const {
    if (arguments_.sSchemaCatalog && !arguments_.sSchema) {
        console.failure("halvane: --schema-catalog needs --schema: the schema whose addresses it maps");
        return ExitCode::InvalidInput;
    }
    const InitOutcome outcome = runInit(arguments_, hosts_, console);
    for (const auto& sProblem : outcome.problems)
        console.failure("halvane: " + sProblem);
    if (outcome.exitCode != ExitCode::Written)
        return outcome.exitCode;
    if (!sOutput_.empty())
        return writeFile(outcome.sText, console);
    return writeOut(outcome.sText, "the control file", console) ? ExitCode::Written : ExitCode::NotWritten;
}

ExitCode InitCommand::writeFile(const std::string& sText, const Console& console) const {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    io::FileDescriptor file(::open(sOutput_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.isOpen()) {
        const int nError = errno;
        console.failure(fmt::format("halvane: --output: \"{}\": {}", sOutput_,
                                    nError == EEXIST ? "this is there already; give another name"
                                                     : std::strerror(nError)));
        return ExitCode::InvalidInput;
    }
    if (const int nError = io::writeAll(file, sText); nError != 0) {
        std::remove(sOutput_.c_str());
        console.failure(fmt::format("halvane: --output: \"{}\": {}", sOutput_, std::strerror(nError)));
        return ExitCode::NotWritten;
    }
    console.result("Wrote " + sOutput_);
    return ExitCode::Written;
}

} // namespace halvane::cli
