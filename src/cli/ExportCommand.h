#pragma once

#include "cli/Arguments.h"
#include "cli/Subcommand.h"
#include "cli/jobs/JobsArguments.h"
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
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    [[nodiscard]] ExitCode exportOne();
    /// "-" for CONTROL or OUTPUT stands for a standard stream.
    void takeStandardStreams();

    const host::DataHosts& hosts_;
    ExportArguments arguments_;
    JobsArguments jobs_;
};

} // namespace halvane::cli
