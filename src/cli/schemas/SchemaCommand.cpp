#include "cli/schemas/SchemaCommand.h"

#include "base/Choices.h"
#include "base/FindRow.h"
#include "cli/StandardOutput.h"
#include "cli/TerminalConsole.h"
#include "cli/schemas/PublishedSchemas.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

namespace halvane::cli {

namespace {

constexpr const char* sSchemaExamples = R"(
Examples:
  halvane schema
      Which schemas there are.
  halvane schema control-file.rng > control-file.rng
      That of control files, for an editor.

Exit codes:
  0  printed
  2  arguments refused
  4  it cannot be printed)";

std::string listed() {
    std::string sList;
    for (const auto& schema : publishedSchemas())
        sList += fmt::format("{:<30}{}\n", schema.sName, schema.sAbout);
    return sList;
}

/// What may have been meant, or what there is.
std::string meant(const std::string& sName) {
    Choice schemas{"there are", "schema", "schemas", {}};
    for (const auto& schema : publishedSchemas())
        schemas.names.emplace_back(schema.sName);
    return meantOrThere(sName, schemas);
}

} // namespace

void SchemaCommand::declare(CLI::App& app) {
    app.footer(sSchemaExamples);
    app.add_option("NAME", sName_, "The schema to print; without it, which there are")->type_name("");
}

ExitCode SchemaCommand::run() {
    const TerminalConsole console(false);
    if (sName_.empty())
        return writeOut(listed(), "the list", console) ? ExitCode::Written : ExitCode::NotWritten;
    const auto* const pSchema = findRow(publishedSchemas(), sName_, &PublishedSchema::sName);
    if (pSchema == nullptr) {
        console.failure(fmt::format("halvane: there is no schema \"{}\": {}", sName_, meant(sName_)));
        console.failure("See: halvane schema");
        return ExitCode::InvalidInput;
    }
    return writeOut(std::string(pSchema->sText), "the schema", console) ? ExitCode::Written
                                                                        : ExitCode::NotWritten;
}

} // namespace halvane::cli
