#pragma once

#include "cli/Arguments.h"
#include "cli/Subcommand.h"
#include "host/DataHost.h"

#include <cstdint>

namespace halvane::cli {

/// `halvane preview`.
class PreviewCommand : public Subcommand {
public:
    /// @param hosts stays.
    explicit PreviewCommand(const host::DataHosts& hosts) : hosts_(hosts) {}

    [[nodiscard]] std::string name() const override { return "preview"; }
    [[nodiscard]] std::string description() const override {
        return "Show the beginning of the document beside the control file's lines";
    }
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    const host::DataHosts& hosts_;
    ExportArguments arguments_;
    std::uint64_t nItems_ = 3;
    bool bExplains_ = false;
};

} // namespace halvane::cli
