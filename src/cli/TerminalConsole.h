#pragma once

#include "telling/Console.h"

namespace halvane::cli {

/// What the person reads: results on standard output, everything else on standard error, one line each. Every
/// text passes printable().
class TerminalConsole final : public Console {
public:
    /// @param bQuiet only what failed is told.
    explicit TerminalConsole(bool bQuiet) : bQuiet_(bQuiet) {}

    void result(std::string_view sLine) const override;
    void note(std::string_view sLine) const override;
    void failure(std::string_view sLine) const override;

private:
    bool bQuiet_;
};

} // namespace halvane::cli
