#include "cli/CommandLine.h"
#include "cli/ProgramGuard.h"

#include "cli/CheckCommand.h"
#include "cli/Crashes.h"
#include "cli/DialogCommand.h"
#include "cli/ExportCommand.h"
#include "cli/HelpCommand.h"
#include "cli/InitCommand.h"
#include "cli/PreviewCommand.h"
#include "cli/Signals.h"
#include "cli/Subcommand.h"
#include "cli/Suggestions.h"
#include "cli/TerminalConsole.h"
#include "cli/describe/DescribeCommand.h"
#include "cli/schemas/SchemaCommand.h"
#include "telling/StandardStreams.h"
#include "telling/Version.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace halvane::cli {

namespace {

constexpr const char* sDescription =
    "Writes facts about a map and its data into an XML document whose shape a control file prescribes.";
constexpr const char* sFooter = "\"halvane help SUBCOMMAND\" explains a subcommand and gives examples.";

struct Entry {
    CLI::App* pApp;
    std::unique_ptr<Subcommand> pSubcommand;
};

std::vector<Entry> addSubcommands(CLI::App& app, const host::DataHosts& hosts) {
    std::vector<std::unique_ptr<Subcommand>> subcommands;
    subcommands.push_back(std::make_unique<ExportCommand>(hosts));
    subcommands.push_back(std::make_unique<CheckCommand>(hosts));
    subcommands.push_back(std::make_unique<PreviewCommand>(hosts));
    subcommands.push_back(std::make_unique<DescribeCommand>(hosts));
    subcommands.push_back(std::make_unique<InitCommand>(hosts));
    subcommands.push_back(std::make_unique<SchemaCommand>());
    subcommands.push_back(std::make_unique<DialogCommand>());
    subcommands.push_back(std::make_unique<HelpCommand>());

    std::vector<Entry> entries;
    for (auto& pSubcommand : subcommands) {
        CLI::App* pApp = app.add_subcommand(pSubcommand->name(), pSubcommand->description());
        pSubcommand->declare(*pApp);
        entries.push_back({pApp, std::move(pSubcommand)});
    }
    return entries;
}

/// The subcommand that is to blame for a parse error, or the program itself.
const CLI::App& blamed(const CLI::App& app) {
    const auto parsed = app.get_subcommands();
    return parsed.empty() ? app : *parsed.front();
}

ExitCode refuse(const std::string& sWhy, const std::string& sCommand) {
    const TerminalConsole console(false);
    console.failure("halvane: " + sWhy);
    console.failure(fmt::format("See: {} --help", sCommand));
    return ExitCode::InvalidInput;
}

ExitCode refuse(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& subject = blamed(app);
    const std::string sCommand =
        &subject == &app ? app.get_name() : app.get_name() + " " + subject.get_name();
    return refuse(explained(subject, error), sCommand);
}

ExitCode parseAndRun(const host::DataHosts& hosts, int lArguments, const char* const* aArguments) {
    CLI::App app(sDescription, "halvane");
    app.footer(sFooter);
    app.set_version_flag("-V,--version", "halvane " + std::string(version()), "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.require_subcommand(0, 1);
    const auto entries = addSubcommands(app, hosts);
    try {
        app.parse(lArguments, aArguments);
    } catch (const CLI::Success& request) {
        app.exit(request);
        return ExitCode::Written;
    } catch (const CLI::ParseError& error) {
        return refuse(app, error);
    }
    for (const auto& entry : entries)
        if (entry.pApp->parsed())
            return entry.pSubcommand->run();
    return refuse("say what to do: " + subcommandNames(app, " or "), app.get_name());
}

} // namespace

int runCommandLine(const host::DataHosts& hosts, int lArguments, const char* const* aArguments) noexcept {
    fillStandardStreams();
    return runGuarded([&] {
        prepareSignals();
        prepareForCrashes(hosts.dataInUse);
        return parseAndRun(hosts, lArguments, aArguments);
    });
}

} // namespace halvane::cli
