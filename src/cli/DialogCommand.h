#pragma once

#include "cli/Arguments.h"
#include "cli/Subcommand.h"

namespace halvane::cli {

/// `halvane dialog`. The window is a program of its own beside this one, so that an export loads no window
/// toolkit.
class DialogCommand : public Subcommand {
public:
    [[nodiscard]] std::string name() const override { return "dialog"; }
    [[nodiscard]] std::string description() const override {
        return "Open the dialog \"Export to XML\" on a map";
    }
    void declare(CLI::App& app) override;
    /// Becomes the other program; returns only when there is none.
    [[nodiscard]] ExitCode run() override;

    /// Of an export's, those that stand for the application.
    [[nodiscard]] const ExportArguments& arguments() const noexcept { return arguments_; }

private:
    ExportArguments arguments_;
};

} // namespace halvane::cli
