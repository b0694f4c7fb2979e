#include "cli/Suggestions.h"

#include "base/NearestName.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace halvane::cli {

namespace {

std::vector<std::string> namesOf(const CLI::App& program) {
    std::vector<std::string> names;
    for (const CLI::App* pSubcommand : program.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(pSubcommand->get_name());
    return names;
}

std::vector<std::string> optionsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* pOption : app.get_options())
        for (const std::string& sName : pOption->get_lnames())
            names.push_back("--" + sName);
    return names;
}

} // namespace

std::string subcommandNames(const CLI::App& program, std::string_view sBeforeLast) {
    const auto names = namesOf(program);
    return fmt::format("{}{}{}", fmt::join(names.begin(), names.end() - 1, ", "), sBeforeLast, names.back());
}

std::string unknownSubcommand(const CLI::App& program, std::string_view sName) {
    const std::string sQuestion = NearestName(sName).offerAll(namesOf(program)).question("; ");
    return fmt::format("there is no subcommand \"{}\"{}", sName,
                       sQuestion.empty() ? "; there are " + subcommandNames(program, " and ") : sQuestion);
}

std::string explained(const CLI::App& app, const CLI::ParseError& error) {
    const auto rest = app.remaining();
    const auto pOption = std::ranges::find_if(
        rest, [](const std::string& sWord) { return sWord.starts_with("-") && sWord.size() > 1; });
    if (pOption != rest.end())
        return error.what() +
               NearestName(pOption->substr(0, pOption->find('='))).offerAll(optionsOf(app)).question("; ");
    return rest.empty() || app.get_parent() != nullptr || app.get_name().empty()
               ? error.what()
               : unknownSubcommand(app, rest.front());
}

} // namespace halvane::cli
