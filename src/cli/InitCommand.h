#pragma once

#include "cli/Subcommand.h"
#include "host/DataHost.h"
#include "run/InitRun.h"
#include "telling/Console.h"

#include <string>

namespace halvane::cli {

/// `halvane init`.
class InitCommand : public Subcommand {
public:
    /// @param hosts stays.
    explicit InitCommand(const host::DataHosts& hosts) : hosts_(hosts) {}

    [[nodiscard]] std::string name() const override { return "init"; }
    [[nodiscard]] std::string description() const override {
        return "Make a control file to begin with, for what a map has";
    }
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    [[nodiscard]] ExitCode make(const Console& console) const;
    [[nodiscard]] ExitCode writeFile(const std::string& sText, const Console& console) const;

    const host::DataHosts& hosts_;
    InitArguments arguments_;
    bool bQuiet_ = false;
    bool bVerbose_ = false;
    std::string sOutput_; ///< "": standard output
};

} // namespace halvane::cli
