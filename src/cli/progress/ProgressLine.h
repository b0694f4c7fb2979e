#pragma once

#include "cli/progress/TimedProgress.h"

#include <cstdio>

namespace halvane::cli {

/// One line that is written anew: a bar, the speed and the time left where all rows are known, else the items
/// and the time taken.
class ProgressLine final : public TimedProgress {
public:
    /// @param pStream borrowed; a terminal.
    ProgressLine(std::FILE* pStream, Clock clock)
        : TimedProgress(std::move(clock), std::chrono::milliseconds(100)), pStream_(pStream) {}
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() override { ProgressLine::makeRoom(); }

    /// Wipes the line.
    void makeRoom() override;
    void clear() override { makeRoom(); }

private:
    void show(const ProgressFacts& facts) override;

    std::FILE* pStream_;
    bool bOnScreen_ = false;
};

} // namespace halvane::cli
