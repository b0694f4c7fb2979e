#pragma once

#include <string_view>

namespace halvane::cli {

/// What the person reads: results on standard output, everything else on standard error, one line each. Every
/// text passes printable().
class Console {
public:
    explicit Console(bool bQuiet) : bQuiet_(bQuiet) {}

    /// The result. Not when quiet.
    void result(std::string_view sLine) const;
    /// What did not fail but is worth knowing. Not when quiet.
    void note(std::string_view sLine) const;
    /// What failed.
    void failure(std::string_view sLine) const;

private:
    bool bQuiet_;
};

} // namespace halvane::cli
