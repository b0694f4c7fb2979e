#pragma once

#include "cli/progress/TimedProgress.h"

#include <cstdint>
#include <cstdio>

namespace halvane::cli {

/// Lines of JSON for programs, at most two a second, and one more at the end.
class ProgressJson final : public TimedProgress {
public:
    /// @param pStream borrowed.
    ProgressJson(std::FILE* pStream, Clock clock)
        : TimedProgress(std::move(clock), std::chrono::milliseconds(500)), pStream_(pStream) {}

    void update(std::uint64_t lItems) override;
    void clear() override;

private:
    void show(const ProgressFacts& facts) override;

    std::FILE* pStream_;
    std::uint64_t lItems_ = 0;
    bool bEnded_ = false;
};

} // namespace halvane::cli
