#pragma once

#include "base/Failure.h"

#include <cstdint>

namespace halvane {

/// Counts the items of a repeated node, from 0 up to a limit.
class ItemCounter {
public:
    explicit ItemCounter(std::int64_t lLimit) : lLimit_(lLimit) {}

    [[nodiscard]] std::int64_t value() const noexcept { return lValue_; }

    /// @throws Failure Overflow when the counter would pass its limit.
    void increment() {
        if (lValue_ >= lLimit_)
            throw Failure(FailureNumber::Overflow, "Overflow: more items than the limit allows");
        ++lValue_;
    }

private:
    std::int64_t lLimit_;
    std::int64_t lValue_ = 0;
};

} // namespace halvane
