#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace halvane::cli {

/// Why arguments were refused, with what may have been meant.
/// @param app that was to take them: the program or a subcommand.
[[nodiscard]] std::string explained(const CLI::App& app, const CLI::ParseError& error);

/// That the program has no such subcommand, and which one may have been meant or which there are.
[[nodiscard]] std::string unknownSubcommand(const CLI::App& program, std::string_view sName);

/// The names of the subcommands: "export, check or help".
[[nodiscard]] std::string subcommandNames(const CLI::App& program, std::string_view sBeforeLast);

} // namespace halvane::cli
