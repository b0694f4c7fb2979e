#pragma once

#include "cli/Subcommand.h"

#include <string>

namespace halvane::cli {

/// "halvane schema": the schemas of what the program reads and writes, for editors and other programs.
class SchemaCommand final : public Subcommand {
public:
    [[nodiscard]] std::string name() const override { return "schema"; }
    [[nodiscard]] std::string description() const override {
        return "Print a schema of what the program reads or writes";
    }
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    std::string sName_;
};

} // namespace halvane::cli
