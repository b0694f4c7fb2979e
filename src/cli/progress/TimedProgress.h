#pragma once

#include "cli/progress/ProgressFacts.h"
#include "telling/Progress.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string_view>

namespace halvane::cli {

/// Shows how far something is, now and then, once it takes longer than a moment.
class TimedProgress : public Progress {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    /// @param interval at least, between two showings; the first comes after half a second.
    TimedProgress(Clock clock, std::chrono::milliseconds interval)
        : clock_(std::move(clock)), interval_(interval), started_(clock_()), due_(started_ + first) {}

    void setRows(AskRows ask) override { askRows_ = std::move(ask); }
    void update(std::uint64_t lItems) override;
    /// What is counted instead of rows. @param sUnit stays.
    void setUnit(std::string_view sUnit) { sUnit_ = sUnit; }

protected:
    virtual void show(const ProgressFacts& facts) = 0;
    /// How far it is now.
    [[nodiscard]] ProgressFacts facts(std::uint64_t lItems, Time now);
    [[nodiscard]] Time now() const { return clock_(); }

private:
    static constexpr auto first = std::chrono::milliseconds(500);

    Clock clock_;
    std::chrono::milliseconds interval_;
    Time started_;
    Time due_;
    AskRows askRows_;
    std::string_view sUnit_ = "rows";
    /// The loop that was looked at last, and where it was when it was first seen.
    std::uint64_t nLoop_ = 0;
    Time since_{};
    std::int64_t lSince_ = 0;
};

} // namespace halvane::cli
