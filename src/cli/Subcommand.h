#pragma once

#include "telling/ExitCodes.h"

#include <string>

namespace CLI {
class App;
}

namespace halvane::cli {

/// One thing that the program does: `halvane NAME …`.
class Subcommand {
public:
    Subcommand() = default;
    Subcommand(const Subcommand&) = delete;
    Subcommand& operator=(const Subcommand&) = delete;
    virtual ~Subcommand() = default;

    [[nodiscard]] virtual std::string name() const = 0;
    /// One sentence for the list of subcommands.
    [[nodiscard]] virtual std::string description() const = 0;
    /// Declares options, positionals and examples.
    virtual void declare(CLI::App& app) = 0;
    /// Called once, after the arguments were read into what declare() named.
    [[nodiscard]] virtual ExitCode run() = 0;
};

} // namespace halvane::cli
