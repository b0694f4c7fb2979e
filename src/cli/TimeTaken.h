#pragma once

#include "telling/Console.h"

#include <fmt/format.h>

#include <chrono>

namespace halvane::cli {

/// Tells at its end how long it lived, where that is wanted.
class TimeTaken {
public:
    /// @param console outlives it.
    TimeTaken(const Console& console, bool bTells) : console_(console), bTells_(bTells) {}
    TimeTaken(const TimeTaken&) = delete;
    TimeTaken& operator=(const TimeTaken&) = delete;
    ~TimeTaken() {
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started_;
        if (bTells_)
            console_.note(fmt::format("halvane: took {:.3f} s", taken.count()));
    }

private:
    const Console& console_;
    bool bTells_;
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
};

} // namespace halvane::cli
