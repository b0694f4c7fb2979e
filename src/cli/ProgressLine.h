#pragma once

#include "telling/Progress.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

namespace halvane::cli {

/// One rewriting line with the items written and the time taken, once an export takes longer than a moment.
class ProgressLine final : public Progress {
public:
    using Clock = std::chrono::steady_clock;

    /// @param pStream borrowed; where the line goes when `bShown`.
    ProgressLine(std::FILE* pStream, bool bShown) : pStream_(pStream), bShown_(bShown) {}
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() override { clear(); }

    /// Rewrites the line when it is time to.
    void update(std::uint64_t lItems) override;
    /// Wipes the line, so that other text can follow.
    void clear() override;

private:
    std::FILE* pStream_;
    bool bShown_;
    bool bOnScreen_ = false;
    Clock::time_point started_ = Clock::now();
    Clock::time_point due_ = started_ + std::chrono::milliseconds(500);
};

/// Whether standard error is a terminal that a line can be rewritten on.
[[nodiscard]] bool terminalOnStandardError();

} // namespace halvane::cli
