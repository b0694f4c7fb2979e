#pragma once

#include "cli/Arguments.h"
#include "cli/Subcommand.h"

namespace halvane::cli {

/// `halvane export`.
class ExportCommand : public Subcommand {
public:
    [[nodiscard]] std::string name() const override { return "export"; }
    [[nodiscard]] std::string description() const override {
        return "Write the document that a control file prescribes";
    }
    void declare(CLI::App& app) override { declareExportArguments(app, arguments_); }
    [[nodiscard]] ExitCode run() override;

private:
    ExportArguments arguments_;
};

} // namespace halvane::cli
