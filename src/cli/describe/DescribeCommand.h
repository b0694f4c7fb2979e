#pragma once

#include "cli/Subcommand.h"
#include "host/DataHost.h"
#include "telling/Console.h"

#include <optional>
#include <string>

namespace halvane::cli {

/// `halvane describe`.
class DescribeCommand : public Subcommand {
public:
    /// @param hosts stays.
    explicit DescribeCommand(const host::DataHosts& hosts) : hosts_(hosts) {}

    [[nodiscard]] std::string name() const override { return "describe"; }
    [[nodiscard]] std::string description() const override {
        return "Tell everything that a control file could name in a map";
    }
    void declare(CLI::App& app) override;
    [[nodiscard]] ExitCode run() override;

private:
    const host::DataHosts& hosts_;
    [[nodiscard]] ExitCode describe(const Console& console) const;
    [[nodiscard]] ExitCode writePage(const Console& console) const;
    [[nodiscard]] ExitCode compare(const Console& console) const;

    std::string sMap_;
    std::optional<std::string> sPage_; ///< the file of a page of HTML
    std::optional<std::string> sNew_;  ///< that the map is compared with
    bool bJson_ = false;
    bool bQuiet_ = false;
    bool bVerbose_ = false;
    bool bAllowConnections_ = false;
};

} // namespace halvane::cli
