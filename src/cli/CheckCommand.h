#pragma once

#include "cli/Arguments.h"
#include "cli/Subcommand.h"
#include "host/DataHost.h"

namespace halvane::cli {

/// `halvane check`.
class CheckCommand : public Subcommand {
public:
    /// @param hosts stays.
    explicit CheckCommand(const host::DataHosts& hosts) : hosts_(hosts) {}

    [[nodiscard]] std::string name() const override { return "check"; }
    [[nodiscard]] std::string description() const override {
        return "Tell what is wrong with a control file, without writing a document";
    }
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    const host::DataHosts& hosts_;
    ExportArguments arguments_;
    bool bJson_ = false;
    bool bSarif_ = false;
};

} // namespace halvane::cli
