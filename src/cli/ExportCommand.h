#pragma once

#include "cli/Arguments.h"
#include "cli/Subcommand.h"
#include "host/DataHost.h"

namespace halvane::cli {

/// `halvane export`.
class ExportCommand : public Subcommand {
public:
    /// @param hosts stays.
    explicit ExportCommand(const host::DataHosts& hosts) : hosts_(hosts) {}

    [[nodiscard]] std::string name() const override { return "export"; }
    [[nodiscard]] std::string description() const override {
        return "Write the document that a control file prescribes";
    }
    void declare(CLI::App& app) override { declareExportArguments(app, arguments_); }
    [[nodiscard]] ExitCode run() override;

private:
    /// "-" for CONTROL or OUTPUT stands for a standard stream.
    void takeStandardStreams();

    const host::DataHosts& hosts_;
    ExportArguments arguments_;
};

} // namespace halvane::cli
