#include "cli/HelpCommand.h"

#include "cli/StandardOutput.h"
#include "cli/Suggestions.h"
#include "cli/TerminalConsole.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace halvane::cli {

namespace {

/// Nothing where there is none of that name.
const CLI::App* subcommandOf(const CLI::App& program, const std::string& sName) {
    const auto found =
        program.get_subcommands([&](const CLI::App* pApp) { return pApp->get_name() == sName; });
    return found.empty() ? nullptr : found.front();
}

} // namespace

void HelpCommand::declare(CLI::App& app) {
    pProgram_ = app.get_parent();
    app.add_option("SUBCOMMAND", sSubcommand_, "What to explain; without it, the program")->type_name("");
}

ExitCode HelpCommand::run() {
    const TerminalConsole console(false);
    const CLI::App* pAbout = sSubcommand_.empty() ? pProgram_ : subcommandOf(*pProgram_, sSubcommand_);
    if (pAbout == nullptr) {
        console.failure("halvane: " + unknownSubcommand(*pProgram_, sSubcommand_));
        console.failure("See: halvane --help");
        return ExitCode::InvalidInput;
    }
    // The program's own text, which would otherwise be that of the subcommand it was called with.
    const std::string sName =
        pAbout == pProgram_ ? pProgram_->get_name() : pProgram_->get_name() + " " + pAbout->get_name();
    const std::string sText =
        pProgram_->get_formatter()->make_help(pAbout, sName, CLI::AppFormatMode::Normal);
    return writeOut(sText, "the help", console) ? ExitCode::Written : ExitCode::NotWritten;
}

} // namespace halvane::cli
