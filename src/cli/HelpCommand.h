#pragma once

#include "cli/Subcommand.h"

#include <string>

namespace halvane::cli {

/// `halvane help`.
class HelpCommand : public Subcommand {
public:
    [[nodiscard]] std::string name() const override { return "help"; }
    [[nodiscard]] std::string description() const override { return "Explain the program or a subcommand"; }
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    const CLI::App* pProgram_ = nullptr;
    std::string sSubcommand_; ///< "": the program itself
};

} // namespace halvane::cli
