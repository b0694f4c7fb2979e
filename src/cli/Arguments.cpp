#include "cli/Arguments.h"

#include "base/FindRow.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace halvane::cli {

namespace {

constexpr const char* sExportExamples = R"(
Examples:
  halvane export --map world.gpkg control.xml world.xml
      Every layer and table of the GeoPackage is in the map.
  halvane export --map world.xml --select Cities=4,8,15 control.xml out/cities.xml
      A map document; only three cities, in this order.
  halvane export --map data/ --select "Cities=POP > 1000000" control.xml big.xml
      All data files of a folder; only the large cities.
  halvane export --map world.xml --xml tags.xml --node-path //QvLayer control.xml tagged.xml
      Layers and fields are found by the tags of a second document.
  halvane export --map world.xml --report report.json control.xml world.xml
      What failed and what was not found, also for a program to read.
  halvane export --map world.gpkg --exact-name --schema gpx.xsd control.xml tracks.gpx
      The document's name ends as it is given; its schema says whether it is valid.

OUTPUT gets ".xml" appended unless its name holds the letters XML, or --exact-name is given.

Exit codes:
  0  written, and no control node failed
  2  arguments or inputs refused; nothing was started
  3  written, but a control node failed, the document is not valid, or the report could not be written
  4  nothing written; an older document is untouched)";

/// Plain digits only: the parser's own conversion would read "010" as eight.
std::int64_t itemLimit(const std::string& sText) {
    std::int64_t lLimit = 0;
    const char* pEnd = sText.data() + sText.size();
    const auto [pStop, code] = std::from_chars(sText.data(), pEnd, lLimit);
    if (code != std::errc() || pStop != pEnd || lLimit < 1)
        throw CLI::ValidationError("--item-limit", "\"" + sText + "\" is not a whole number from 1 on");
    return lLimit;
}

ProgressForm progressForm(const std::string& sText) {
    constexpr std::array<std::pair<std::string_view, ProgressForm>, 3> aForms{
        {{"auto", ProgressForm::Line}, {"json", ProgressForm::Json}, {"never", ProgressForm::None}}};
    if (const auto* pForm = findRow(aForms, sText, &std::pair<std::string_view, ProgressForm>::first))
        return pForm->second;
    throw CLI::ValidationError("--progress", "\"" + sText + R"(" is none of "auto", "json" and "never")");
}

void declareControl(CLI::App& app, ExportArguments& arguments) {
    app.add_option("CONTROL", arguments.sControl,
                   "The control file: what to write, and where; \"-\": standard input")
        ->type_name("")
        ->required();
}

void declareInputs(CLI::App& app, ExportArguments& arguments) {
    declareApplicationArguments(app, arguments);
    addText(app, "--xml", arguments.sXmlDocument, "DOC",
            "A second document, whose nodes at --node-path pair tag names with aliases");
    addText(app, "--node-path", arguments.sNodePath, "XPATH", "The path into the document of --xml");
    addRepeatable(app, "--set", arguments.values, "NAME=VALUE",
                  "A value for $NAME in a control file of the second edition; repeatable");
}

void declareBehaviour(CLI::App& app, ExportArguments& arguments) {
    addText(app, "--schema", arguments.sSchema, "FILE.xsd",
            "Validate the document that was written by an XML Schema; exit code 3 where it is not valid");
    addText(app, "--schema-catalog", arguments.sSchemaCatalog, "CATALOG",
            "An XML catalogue: local files for addresses that the schema imports");
    addText(app, "--report", arguments.sReport, "FILE.json",
            "Write what happened as JSON (docs/report.schema.json)");
    app.add_flag("--exact-name", arguments.bExactName, "OUTPUT is the document's name as it stands");
    app.add_option_function<std::string>(
           "--item-limit",
           [&arguments](const std::string& sText) { arguments.lItemLimit = itemLimit(sText); },
           "End a repeated node with an error once it has written more than N items")
        ->type_name("N");
    app.add_option_function<std::string>(
           "--progress", [&arguments](const std::string& sText) { arguments.progress = progressForm(sText); },
           "auto: a progress line on a terminal when it takes long; json: lines for programs on standard "
           "error (docs/progress.schema.json); never: none")
        ->type_name("auto|json|never");
    app.add_flag_callback(
        "--no-sync", [&arguments] { arguments.durability = io::Durability::LeftToSystem; },
        "Do not wait until the document is on the disk: quicker for those who export thousands");
    declareVerbosity(app, arguments.bQuiet, arguments.bVerbose);
}

} // namespace

void declareVerbosity(CLI::App& app, bool& bQuiet, bool& bVerbose) {
    auto* const pQuiet =
        app.add_flag("-q,--quiet", bQuiet, "Only failures on standard error, no other messages");
    app.add_flag("--verbose", bVerbose, "Also tell what was read, and how long it took")->excludes(pQuiet);
}

void addText(CLI::App& app, const char* sName, std::optional<std::string>& sValue, const char* sPlaceholder,
             const char* sDescription) {
    app.add_option_function<std::string>(
           sName, [&sValue](const std::string& sText) { sValue = sText; }, sDescription)
        ->type_name(sPlaceholder);
}

void addRepeatable(CLI::App& app, const char* sName, std::vector<std::string>& values,
                   const char* sPlaceholder, const char* sDescription) {
    app.add_option(sName, values, sDescription)
        ->type_name(sPlaceholder)
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false);
}

void declareApplicationArguments(CLI::App& app, ExportArguments& arguments) {
    addText(app, "--map", arguments.sMap, "MAP",
            "A map document, a QGIS project, or any dataset or folder: a map of all its layers and tables");
    app.add_flag("--allow-connections", arguments.bAllowConnections, sAllowConnections);
    addRepeatable(
        app, "--select", arguments.selections, "LAYER=FIDS|WHERE",
        "Select features of a layer of the map: identifiers in order, or a where clause; repeatable");
    addRepeatable(app, "--processor", arguments.processors, "LIBRARY",
                  "Load a library of external processors; repeatable");
}

void declareControlArguments(CLI::App& app, ExportArguments& arguments) {
    declareControl(app, arguments);
    declareInputs(app, arguments);
}

void takeControlOfStandardInput(ExportArguments& arguments) {
    if (arguments.sControl != sStream)
        return;
    arguments.sControl = sStandardInput;
    arguments.bReadsStandardInput = true;
}

void declareExportArguments(CLI::App& app, ExportArguments& arguments) {
    app.footer(sExportExamples);
    declareControl(app, arguments);
    app.add_option("OUTPUT", arguments.sOutput,
                   "The document to write; its folder exists; \"-\": standard output")
        ->type_name("")
        ->required();
    declareExportOptions(app, arguments);
}

void declareExportOptions(CLI::App& app, ExportArguments& arguments) {
    declareInputs(app, arguments);
    declareBehaviour(app, arguments);
}

} // namespace halvane::cli
