#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace halvane::ui {

/// When a window shows the export that it waits for, and when it handles what people do meanwhile. A person
/// sees a short export only by its outcome. Turns come often enough for a screen reader, which asks one thing
/// after the other, and seldom enough to cost nothing.
class Pacing {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// @param fnNow the clock.
    explicit Pacing(std::function<Time()> fnNow = &std::chrono::steady_clock::now)
        : fnNow_(std::move(fnNow)) {}

    /// An export begins.
    void begin() {
        started_ = fnNow_();
        due_ = started_ + betweenTurns;
    }
    [[nodiscard]] bool lastsLong() const { return fnNow_() - started_ >= untilShown; }
    [[nodiscard]] bool turnIsDue() const { return fnNow_() >= due_; }
    /// The export has ended.
    void end() { ended_ = fnNow_(); }
    /// A key that was to cancel the export may still come, and must not be taken for another wish.
    [[nodiscard]] bool endedJustNow() const {
        return ended_.has_value() && fnNow_() - *ended_ < untilKeysAreNew;
    }
    /// The next turn comes a while after the end of this one.
    void endTurn() { due_ = fnNow_() + betweenTurns; }

private:
    static constexpr std::chrono::milliseconds untilShown{500};
    static constexpr std::chrono::milliseconds betweenTurns{10};
    static constexpr std::chrono::milliseconds untilKeysAreNew{400};

    std::function<Time()> fnNow_;
    Time started_;
    Time due_;
    std::optional<Time> ended_;
};

} // namespace halvane::ui
