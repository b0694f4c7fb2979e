#pragma once

#include "halvane.h"
#include "library/Turn.h"
#include "telling/Progress.h"

#include <chrono>

namespace halvane::library {

/// Tells the caller of items: at the first, then after each tenth of a second, and at the end.
class CallbackProgress final : public Progress {
public:
    using Clock = std::chrono::steady_clock;

    /// @param task borrowed; cancelled where the callback wants it.
    explicit CallbackProgress(Task& task) : task_(task) {}

    void tell(halvane_progress pCallback, void* pUser) noexcept {
        pCallback_ = pCallback;
        pUser_ = pUser;
    }

    /// A run begins.
    void restart() noexcept;
    void update(std::uint64_t lItems) override;
    void clear() override;

private:
    void pass();

    Task& task_;
    halvane_progress pCallback_ = nullptr;
    void* pUser_ = nullptr; ///< the caller's
    std::uint64_t lItems_ = 0;
    std::uint64_t lTold_ = 0;
    Clock::time_point due_;
};

} // namespace halvane::library
