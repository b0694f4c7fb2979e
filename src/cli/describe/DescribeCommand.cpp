#include "cli/describe/DescribeCommand.h"

#include "cli/Console.h"
#include "cli/Interruption.h"
#include "cli/Outcome.h"
#include "cli/Paths.h"
#include "cli/StandardStreams.h"
#include "cli/describe/DescriptionJson.h"
#include "cli/describe/DescriptionPage.h"
#include "cli/describe/Reading.h"
#include "collection/Failure.h"
#include "host/gdal/GdalHost.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace halvane::cli {

namespace {

constexpr const char* sFooter = R"(
Examples:
  halvane describe world.gpkg
      A page of text: layers, fields, domains, workspaces.
  halvane describe world.xml --json > world.json
      The same for a program to read (docs/describe.schema.json).

What cannot be read says so in its place and changes no exit code.

Exit codes:
  0  described
  2  arguments refused, or the map cannot be opened
  4  the description cannot be written to standard output, or was cancelled)";

ExitCode writeOut(const std::string& sText, const Console& console) {
    const bool bWritten =
        std::fwrite(sText.data(), 1, sText.size(), stdout) == sText.size() && std::fflush(stdout) == 0;
    const int lError = errno;
    // A reader who has seen enough and gone away is no failure.
    if (bWritten || lError == EPIPE)
        return ExitCode::Written;
    console.failure(fmt::format("halvane: the description cannot be written: {}", std::strerror(lError)));
    return ExitCode::NotWritten;
}

} // namespace

void DescribeCommand::declare(CLI::App& app) {
    app.add_option("MAP", sMap_,
                   "A map document, or any dataset or folder: a map of all its layers and tables")
        ->type_name("")
        ->required();
    app.add_flag("--json", bJson_, "JSON in the form of docs/describe.schema.json instead of a page of text");
    app.footer(sFooter);
}

ExitCode DescribeCommand::run() {
    const Console console(false);
    LibraryLines libraryLines;
    const ExitCode code = describe(console);
    for (const auto& sWarning : libraryWarnings(libraryLines.take()))
        console.note("halvane: warning: " + sWarning);
    return code;
}

ExitCode DescribeCommand::describe(const Console& console) const {
    host::gdal::GdalHost::endWhen(&interruptionRequested);
    const auto pHost = host::gdal::GdalHost::create();
    try {
        const auto pDocument = pHost->openMapDocument(sMap_);
        for (const auto& sRemark : pHost->remarks(pDocument))
            console.note(fmt::format("halvane: warning: MAP: {}", sRemark));
        const MapDescription description = describeMap(*pDocument, pHost->namedWorkspaces());
        const std::string sPath = absolutePath(sMap_);
        if (!interruptionRequested())
            return writeOut(
                bJson_ ? descriptionJson(description, sPath) : descriptionPage(description, sPath), console);
    } catch (const DescriptionGivenUp&) {
        // Told below.
    } catch (const Failure& failure) {
        if (!interruptionRequested()) {
            console.failure(fmt::format("halvane: MAP: {}", failure.description()));
            return ExitCode::InvalidInput;
        }
    }
    console.failure("halvane: nothing was described: the description was cancelled");
    return ExitCode::NotWritten;
}

} // namespace halvane::cli
